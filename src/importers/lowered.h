// Objects are dumped under their lower-case names. Where the file system tells cases apart,
// the lower-case name is made to lead to the object while the dump program runs.
#pragma once

#include "brax/options.h"
#include "search/directory.h"

enum LOWERWAY {
    LOWERSAME,      // the name leads to the object anyway
    LOWERRENAMED,   // a member of ours, renamed for good
    LOWEREXCHANGED, // a member of ours, in the place of another one, which is in `spare`
    LOWERLINKED,    // a link of that name stands beside the user's object
    LOWERPRIVATE,   // a link in the temporary directory, which is the current one now
    LOWERNONE       // not to be had
};

struct LOWERED {
    char name[BRAXFIELDSIZE]; // the object's name in lower case
    LOWERWAY way;
    char spare[32];
    SGI_place directory; // LOWERPRIVATE: the object's
};

// Whether the path is a link as lowerobject makes it beside an object.
bool isdumplink(const char *path);

// For an object in the current directory, which is the temporary directory: its files may be
// renamed.
void lowermember(LOWERED *lowered, const char *object);

// For an object in the current directory, which is the user's: nothing of the user's is touched
// there. The listing and a link are made beside the object, or, where either has no place, in the
// temporary directory of `home`, from where the object is `directory` (empty or with its last
// separator) and `object`. False, with nothing to put back, when neither is possible.
bool lowerobject(LOWERED *lowered, const char *object, const char *directory,
                 const SGI_place *home);

// The name to dump the object by.
const char *dumpname(const LOWERED *lowered, const char *object);

// Puts back what the two above did, except LOWERRENAMED, and removes the listing beside a user's
// object. The object's directory is the current one again. Returns the name that the object has
// now.
const char *unlower(LOWERED *lowered, const char *object);
