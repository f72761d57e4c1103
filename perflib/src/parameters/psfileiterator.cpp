#include "psfileiterator.h"

#include "psstream.h"

int psFileIterator::readData(void* buffer, int length, int divisor) const {
    i_stream file(value(), PS_OPEN_READ | PS_OPEN_BINARY);
    if (!file.isOpen()) {
        return 0;
    }
    const int got = file.read(buffer, length);
    return divisor == 0 || got > length / divisor ? got : 0;
}
