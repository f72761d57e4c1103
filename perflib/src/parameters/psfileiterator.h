#pragma once

#include "psiterator.h"

// An iterator over file names, opened as paths as they stand.
class psFileIterator : public psIterator<psString> {
public:
    using psIterator<psString>::psIterator;

    // Reads at most length (1 or more) bytes of the current file into buffer; returns the bytes
    // read. 0 (reported) when the file cannot be read, is empty or an output of this program, and,
    // with a divisor other than 0, when the file gave
    // no more than length / divisor bytes: a longer length would then measure the same bytes
    // again.
    int readData(void* buffer, int length, int divisor) const;
};

// Called with the name of each file that readData has opened, before it is read; null: nobody asks.
using psFileListener = void (*)(const psString& file);
extern psFileListener g_fileListener;
