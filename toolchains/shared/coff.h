/* Listing of COFF objects with the ordinary header or the one for many sections ("bigobj"), of any
   little-endian machine. */
#ifndef TOOLCHAINS_COFF_H
#define TOOLCHAINS_COFF_H

#include "bytes.h"

/* Writes the symbols and the section sizes of the object to `out`:

       COFF SYMBOL TABLE
       000 00000000 DEBUG  notype       Filename     |  .file
           events.c
       00F 00000000 SECT1  notype ()    External     |  _event_subscribe
       011 00000000 UNDEF  notype ()    External     |  _panic

         Summary

                103 .text
                 20 .data
                  4 .bss

   Section number, storage class and name begin at columns 13, 33 and 49; section numbers and names
   that do not fit are cut. An import record of a library is listed as the symbols that it
   defines. The object may hold any bytes. Returns null, or a static text with the object's fault;
   the listing then ends before the fault. */
const char *coff_list(BYTES object, FILE *out);

#endif
