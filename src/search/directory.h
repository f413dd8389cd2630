// Lists the current directory, and gives the attribute byte and date of its entries.
//
// To list another directory, enter it first. Do not change the directory while the listing is open.
// Entries come in the system's order, "." and ".." included.
//
// There are two ways to read entries. SGIfindfirst and SGIfindnext are the published pair: an
// entry that cannot be examined (a dangling symbolic link) ends the listing. SGIfindopen and
// SGIfindquick, used by the program's walks, continue after such an entry.
#pragma once

#include <cstdint>
#include <fcntl.h>

// One directory entry. Unknown fields are 0.
struct SGI_finddata {
    char name[2048]; // without a directory part
    uint32_t attrib; // the SGIATTR bits
    int32_t time;    // status change, seconds since 1970 in UTC
    int32_t size;    // bytes, at most 2,147,483,647
};

// Bits of SGI_finddata's attrib. The listing never sets the third.
constexpr uint32_t SGIATTRDIRECTORY = 1;
constexpr uint32_t SGIATTRREADONLY = 2; // the owner may read and may not write
constexpr uint32_t SGIATTRSYSTEM = 4;

// An open listing, owned by the caller until SGIfindclose; 0 for none.
using SGI_handle = intptr_t;

// Opens a listing and fills the record with its first entry; only the name if that cannot be
// examined. 0 if the directory cannot be opened or has no entry.
SGI_handle SGIfindfirst(SGI_finddata *data);

// Returns 1 when the record holds the next entry. 0 at the end and, on purpose, also at an entry
// that cannot be examined; the record then holds its name.
int SGIfindnext(SGI_handle handle, SGI_finddata *data);

// Closes a listing; the handle must not be 0. Returns 1.
int SGIfindclose(SGI_handle handle);

// Opens a listing without reading an entry; 0 on failure.
SGI_handle SGIfindopen();

// The entry cannot be examined: only its name is set.
constexpr int SGIFOUNDUNKNOWN = -1;

// Reads the next entry's name and directory bit, which most file systems report without a stat;
// SGIfindfill sets the rest. Returns 1, SGIFOUNDUNKNOWN, or 0 at the end.
int SGIfindquick(SGI_handle handle, SGI_finddata *data);

// Sets attrib, time and size of the entry data->name in the current directory. False, with all
// three 0, if it cannot be examined.
bool SGIfindfill(SGI_finddata *data);

// The framework's attribute byte of a filled record: 1 directory, 2 read-only, 4 system,
// 8 hidden (the third attrib bit sets both 4 and 8).
uint8_t BRAX_makeattrib(const SGI_finddata *data);

// Each returns 1 if the attribute byte has the bit, else 0.
int BRAX_isdirectory(uint8_t attrib);
int BRAX_isreadonly(uint8_t attrib);
int BRAX_issystem(uint8_t attrib);
int BRAX_ishidden(uint8_t attrib);

// The date of the first entry of the current directory that matches the name part of the path:
// year * 10000 + month * 100 + day in local time, months from 0. Wildcards are allowed, case is
// ignored, an empty name part means ".", and the directory part is not used. 0 if nothing
// matches. A name without wildcards that exists as it is spelt is taken without a listing.
int32_t BRAX_filedate(const char *path);

// A directory to return to. It is kept open, so it is found again even if it was moved.
struct SGI_place {
    int descriptor;
};

// Flags to open such a directory. O_PATH does not require read permission.
#ifdef O_PATH
constexpr int SGIPLACEFLAGS = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int SGIPLACEFLAGS = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

// Saves the current directory. False if it cannot be opened; the place must then not be used.
bool SGIsaveplace(SGI_place *place);

// Makes a saved place the current directory; the place stays valid. False on failure.
bool SGIreturn(const SGI_place *place);

// Closes a saved place.
void SGIforgetplace(SGI_place *place);
