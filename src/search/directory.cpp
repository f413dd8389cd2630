#include "search/directory.h"

#include "base/options.h"
#include "base/text.h"
#include "mem/galloc.h"
#include "search/record.h"
#include "wild/wild.h"

#include <climits>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

DIR *stream(SGI_handle handle) {
    return reinterpret_cast<DIR *>(handle);
}

void clearstatus(SGI_finddata *data) {
    data->attrib = 0;
    data->time = 0;
    data->size = 0;
}

} // namespace

SGI_handle SGIfindopen() {
    return reinterpret_cast<SGI_handle>(opendir("."));
}

SGI_handle SGIfindfirst(SGI_finddata *data) {
    *data = {};
    const SGI_handle handle = SGIfindopen();
    if (handle != 0 && SGIfindquick(handle, data) != 0) {
        SGIfindfill(data);
        return handle;
    }
    if (handle != 0)
        SGIfindclose(handle);
    return 0;
}

int SGIfindnext(SGI_handle handle, SGI_finddata *data) {
    *data = {};
    return SGIfindquick(handle, data) != 0 && SGIfindfill(data) ? 1 : 0;
}

int SGIfindclose(SGI_handle handle) {
    closedir(stream(handle));
    return 1;
}

int SGIfindquick(SGI_handle handle, SGI_finddata *data) {
    const dirent *entry = readdir(stream(handle));
    if (entry == nullptr) {
        *data = {};
        return 0;
    }
    copytext(data->name, entry->d_name, sizeof data->name);
    clearstatus(data);
#ifdef DT_DIR
    if (entry->d_type == DT_DIR) {
        data->attrib = SGIATTRDIRECTORY;
        return 1;
    }
    if (entry->d_type != DT_UNKNOWN && entry->d_type != DT_LNK)
        return 1;
#endif
    return SGIfindfill(data) ? 1 : SGIFOUNDUNKNOWN;
}

bool SGIfindfill(SGI_finddata *data) {
    clearstatus(data);
    struct stat status = {};
    if (stat(data->name, &status) != 0)
        return false;
    data->size = toint32(status.st_size);
    data->time = toint32(status.st_ctime);
    if (S_ISDIR(status.st_mode))
        data->attrib |= SGIATTRDIRECTORY;
    if ((status.st_mode & (S_IRUSR | S_IWUSR)) == S_IRUSR)
        data->attrib |= SGIATTRREADONLY;
    return true;
}

uint8_t BRAX_makeattrib(const SGI_finddata *data) {
    unsigned attrib = data->attrib & (SGIATTRDIRECTORY | SGIATTRREADONLY);
    if ((data->attrib & SGIATTRSYSTEM) != 0)
        attrib |= 4 | 8;
    return static_cast<uint8_t>(attrib);
}

int BRAX_isdirectory(uint8_t attrib) {
    return attrib & 1;
}

int BRAX_isreadonly(uint8_t attrib) {
    return attrib >> 1 & 1;
}

int BRAX_issystem(uint8_t attrib) {
    return attrib >> 2 & 1;
}

int BRAX_ishidden(uint8_t attrib) {
    return attrib >> 3 & 1;
}

namespace {

int32_t decimaldate(int32_t seconds) {
    const time_t moment = seconds;
    struct tm date = {};
    if (localtime_r(&moment, &date) == nullptr)
        return 0;
    return (1900 + date.tm_year) * 10000 + date.tm_mon * 100 + date.tm_mday;
}

// Whether an entry matches the name, which is also the destination.
bool matchesname(const char *entry, const char *name) {
    char small[BRAXFIELDSIZE];
    const int64_t size = WILD_outputsize(entry, name);
    char *large = size > BRAXFIELDSIZE ? gallocarray<char>(size) : nullptr;
    char *output = size > BRAXFIELDSIZE ? large : small;
    const bool matched = output != nullptr && WILD_imatch(output, entry, name, name) != 0;
    grelease(large);
    return matched;
}

// Finds the first entry that matches the name.
bool findlisted(const char *name, SGI_finddata *data) {
    const SGI_handle handle = SGIfindopen();
    if (handle == 0)
        return false;
    bool found = false;
    while (!found && SGIfindquick(handle, data) != 0)
        found = matchesname(data->name, name) && SGIfindfill(data);
    SGIfindclose(handle);
    return found;
}

} // namespace

int32_t BRAX_filedate(const char *path) {
    SGI_finddata data = {};
    char name[sizeof data.name];
    BRAX_getname(name, path);
    if (name[0] == 0)
        copytext(name, ".", sizeof name);
    copytext(data.name, name, sizeof data.name);
    const bool found = (!holdswildcard(name) && SGIfindfill(&data)) || findlisted(name, &data);
    const int32_t date = found ? decimaldate(data.time) : 0;
    if (OPTverbose >= 5)
        BRAX_say("%s %d\n", path, date);
    return date;
}

bool SGIsaveplace(SGI_place *place) {
    place->descriptor = open(".", SGIPLACEFLAGS);
    return place->descriptor >= 0;
}

bool SGIreturn(const SGI_place *place) {
    return fchdir(place->descriptor) == 0;
}

void SGIforgetplace(SGI_place *place) {
    close(place->descriptor);
    place->descriptor = -1;
}
