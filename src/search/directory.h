// Listing the current directory, and the attribute byte and date of its entries.
//
// The listing always shows the directory the process is in: a caller that wants another
// one changes into it first and must not change again while the listing is open. Entries
// come in the system's order, "." and ".." included.
//
// Two ways to take entries: SGIfindfirst and SGIfindnext are the published pair, for which
// an entry that cannot be examined (a dangling symbolic link) is the end of the listing. The
// walks of this program open with SGIfindopen and take entries with SGIfindquick, which goes on
// after such an entry.
#pragma once

#include <cstdint>
#include <fcntl.h>

// One directory entry. A field that could not be learnt is 0.
struct SGI_finddata {
    char name[2048]; // without any directory part
    uint32_t attrib; // the SGIATTR bits
    int32_t time;    // status change, seconds since 1970 in UTC
    int32_t size;    // bytes; larger files show 2,147,483,647
};

// Bits of SGI_finddata's attrib. The listing never sets the third.
constexpr uint32_t SGIATTRDIRECTORY = 1;
constexpr uint32_t SGIATTRREADONLY = 2; // the owner may read and may not write
constexpr uint32_t SGIATTRSYSTEM = 4;

// An open listing, owned by the caller until SGIfindclose; 0 means that there is none.
using SGI_handle = intptr_t;

// Opens a listing and fills the record with its first entry (its name alone when it cannot
// be examined). 0 when the directory cannot be opened or has no entry.
SGI_handle SGIfindfirst(SGI_finddata *data);

// 1 when the record holds a further entry; 0 at the end and, deliberately, also at an
// entry that cannot be examined, whose name the record then holds.
int SGIfindnext(SGI_handle handle, SGI_finddata *data);

// Closes a listing; the handle must not be 0. Returns 1.
int SGIfindclose(SGI_handle handle);

// Opens a listing that stands before its first entry; 0 when that fails.
SGI_handle SGIfindopen();

// The entry cannot be examined: only its name is filled.
constexpr int SGIFOUNDUNKNOWN = -1;

// The next entry with its name and the directory bit only, which most file systems report
// without a stat; SGIfindfill learns the rest. Returns 1, SGIFOUNDUNKNOWN, or 0 at the end.
int SGIfindquick(SGI_handle handle, SGI_finddata *data);

// Fills attrib, time and size of the entry called data->name in the current directory;
// false, and all three 0, when it cannot be examined.
bool SGIfindfill(SGI_finddata *data);

// The framework's attribute byte of a filled record: 1 directory, 2 read-only, 4 system,
// 8 hidden (the third attrib bit gives both 4 and 8).
uint8_t BRAX_makeattrib(const SGI_finddata *data);

// 1 when the attribute byte has the bit, else 0.
int BRAX_isdirectory(uint8_t attrib);
int BRAX_isreadonly(uint8_t attrib);
int BRAX_issystem(uint8_t attrib);
int BRAX_ishidden(uint8_t attrib);

// The date of the first entry of the current directory that matches the name part of the
// path (wildcards allowed, case ignored), as year * 10000 + month * 100 + day with the
// month counted from 0, local time. The path's directory part is not used; an empty name
// part means ".". 0 when nothing matches. A name without wildcards that is spelt exactly so
// in the directory is taken at once, without a listing.
int32_t BRAX_filedate(const char *path);

// A directory to come back to. It is held open rather than remembered by name, so that it
// is found again whatever was moved meanwhile or however it was left.
struct SGI_place {
    int descriptor;
};

// Flags that open a directory to come back to it. O_PATH needs no permission to list it.
#ifdef O_PATH
constexpr int SGIPLACEFLAGS = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int SGIPLACEFLAGS = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

// Remembers the current directory. False when it cannot be opened; the place must then not be
// returned to.
bool SGIsaveplace(SGI_place *place);

// Makes the place the current directory again; it stays valid. False when that fails.
bool SGIreturn(const SGI_place *place);

// Releases the place, which must have been saved.
void SGIforgetplace(SGI_place *place);
