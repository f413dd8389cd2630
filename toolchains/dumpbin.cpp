/* dumpbin /symbols /out:FILE OBJECT: a stand-in for the PC toolchain's dump program that rests on
   today's objdump. It writes the symbol table of a COFF object and the sizes of its sections:

       COFF SYMBOL TABLE
       019 00000000 DEBUG  notype       Filename     |  .file
           events.c
       00F 00000000 SECT1  notype ()    External     |  _event_subscribe
       011 00000000 UNDEF  notype ()    External     |  _panic

         Summary

                103 .text

   Readers take the columns as they are, and names from column 49 on. What does not fit into a
   column is cut. A weak definition is an external symbol here, as it is for a linker, and the
   nameless body that the compiler gives it is a static one; a weak reference brings nothing and is
   no external. */
#include "shared/objdump.h"

#include <map>
#include <string.h>
#include <string>
#include <strings.h>
#include <vector>

namespace {

enum { CLASS_EXTERNAL = 2, CLASS_STATIC = 3, CLASS_FILE = 103, CLASS_WEAK = 105 };
enum { SECTION_UNDEFINED = 0, SECTION_ABSOLUTE = -1, SECTION_COMMON = -3 };

struct ROW {
    long index;
    int section; // from 1 on, or one of SECTION_...
    int type;    // 0x20: a function
    int storage; // CLASS_...
    long body;   // of a weak symbol: the index of what stands in for it, or -1
    unsigned long long value;
    std::string name;
};

struct OBJECT {
    std::string source;                // from the first file record; empty when there is none
    std::vector<ROW> rows;             // by rising index
    std::vector<std::string> sections; // different names, in the order of the object
    std::map<std::string, unsigned long> size; // by section name
    bool coff;
};

// One symbol as objdump shows it:
// "[ 15](sec  1)(fl 0x00)(ty   20)(scl   2) (nx 0) 0x00000000 _event_subscribe"
bool read_row(const char *line, ROW *row) {
    int name = -1;
    unsigned type = 0;
    *row = {};
    if (sscanf(line, "[%ld](sec %d)(fl 0x%*x)(ty %x)(scl %d) (nx %*d) 0x%llx %n", &row->index,
               &row->section, &type, &row->storage, &row->value, &name) < 5 ||
        name < 0) {
        return false;
    }
    row->type = static_cast<int>(type);
    row->body = -1;
    row->name = line + name;
    if (row->section == SECTION_UNDEFINED && row->value && row->storage == CLASS_EXTERNAL) {
        row->section = SECTION_COMMON;
    }
    return true;
}

void add_section(OBJECT *object, const SECTIONLINE *section) {
    auto [place, added] = object->size.try_emplace(section->name, 0UL);
    place->second += section->size;
    if (added) {
        object->sections.emplace_back(section->name);
    }
}

void read_line(OBJECT *object, char *line) {
    ROW row;
    SECTIONLINE section;
    if (read_row(line, &row)) {
        if (row.storage != CLASS_FILE) {
            object->rows.push_back(row);
        } else if (object->source.empty()) {
            object->source = row.name;
        }
    } else if (const char *body = strstr(line, " tagndx ")) {
        if (strncmp(line, "AUX ", 4) == 0 && !object->rows.empty()) {
            object->rows.back().body = strtol(body + 8, nullptr, 10);
        }
    } else if (section_line(line, &section)) {
        add_section(object, &section);
    } else if (const char *format = strstr(line, ":     file format p")) {
        object->coff = format[19] == 'e';
    }
}

ROW *find_row(std::vector<ROW> &rows, long index) {
    size_t low = 0;
    size_t high = rows.size();
    while (low < high) {
        size_t middle = low + (high - low) / 2;
        if (rows[middle].index < index) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low < rows.size() && rows[low].index == index ? &rows[low] : nullptr;
}

void settle_weak(std::vector<ROW> &rows) {
    for (ROW &row : rows) {
        ROW *body = row.storage == CLASS_WEAK ? find_row(rows, row.body) : nullptr;
        if (body && body->section > SECTION_UNDEFINED) {
            row.section = body->section;
            row.type = body->type;
            row.value = body->value;
            row.storage = CLASS_EXTERNAL;
            if (strncmp(body->name.c_str(), ".weak.", 6) == 0) {
                body->storage = CLASS_STATIC;
            }
        }
    }
}

std::string section_text(int section) {
    switch (section) {
    case SECTION_UNDEFINED:
        return "UNDEF";
    case SECTION_ABSOLUTE:
        return "ABS";
    case SECTION_COMMON:
        return "SECT-"; // defined, in no section yet
    default:
        break;
    }
    char text[16];
    snprintf(text, sizeof text, section > 0 ? "SECT%X" : "DEBUG", static_cast<unsigned>(section));
    return text;
}

const char *storage_text(int storage) {
    switch (storage) {
    case CLASS_EXTERNAL:
        return "External";
    case CLASS_STATIC:
        return "Static";
    case CLASS_FILE:
        return "Filename";
    case CLASS_WEAK:
        return "WeakExternal";
    default:
        return "Other";
    }
}

void print_row(FILE *out, const ROW *row) {
    fprintf(out, "%03lX %08llX %-7.7snotype %-2s    %-13s|  %s\n",
            static_cast<unsigned long>(row->index) & 0xFFFUL, row->value & 0xFFFFFFFFULL,
            section_text(row->section).c_str(), row->type == 0x20 ? "()" : "",
            storage_text(row->storage), row->name.c_str());
}

void print_object(FILE *out, const OBJECT *object) {
    if (object->source.empty()) {
        // Behind the usual heading the first symbol would be taken for the source.
        fprintf(out, "SYMBOL TABLE WITHOUT A FILE RECORD\n");
    } else {
        fprintf(out, "COFF SYMBOL TABLE\n");
        ROW file = {0, -2, 0, CLASS_FILE, -1, 0, ".file"};
        print_row(out, &file);
        fprintf(out, "    %s\n", object->source.c_str());
    }
    for (const ROW &row : object->rows) {
        print_row(out, &row);
    }
    fprintf(out, "\n  Summary\n\n");
    for (const std::string &name : object->sections) {
        fprintf(out, "%12lX %s\n", object->size.at(name), name.c_str());
    }
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 4 || strcasecmp(argv[1], "/symbols") != 0 ||
        strncasecmp(argv[2], "/out:", 5) != 0) {
        fprintf(stderr, "usage: dumpbin /symbols /out:FILE OBJECT\n");
        return 2;
    }
    static const char *const options[] = {"-h", "-t", nullptr};
    LISTING listing;
    if (!listing_open(&listing, "dumpbin", options, argv[3])) {
        return 127;
    }
    OBJECT object = {};
    for (char *line = listing_line(&listing); line; line = listing_line(&listing)) {
        read_line(&object, line);
    }
    settle_weak(object.rows);
    int status = listing_close(&listing);
    if (!status && !object.coff) {
        fprintf(stderr, "dumpbin: %s is no COFF object\n", argv[3]);
        status = 1;
    }
    const char *name = argv[2] + 5;
    FILE *out = fopen(name, "w");
    if (out) {
        print_object(out, &object);
    }
    if (!out || ferror(out) + fclose(out) != 0) {
        fprintf(stderr, "dumpbin: cannot write %s\n", name);
        return 1;
    }
    return status;
}
