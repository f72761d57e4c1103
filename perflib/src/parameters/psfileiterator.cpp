#include "psfileiterator.h"

#include <cerrno>
#include <cstring>

#include "psostream.h"
#include "psstream.h"

constinit psFileListener g_fileListener = nullptr;

static int refuse(const psString& file, const psString& reason) {
    g_ostrm << PS_ERR << "-- Can't read file " << file << ": " << reason << "\n" << PS_END_FLUSH;
    return 0;
}

int psFileIterator::readData(void* buffer, int length, int divisor) const {
    i_stream file(value(), PS_OPEN_READ | PS_OPEN_BINARY);
    if (!file.isOpen()) {
        return 0;
    }
    if (file.isWrittenHere()) {
        return refuse(value(), "this run writes it");
    }
    if (g_fileListener) {
        g_fileListener(value());
    }
    const int got = file.read(buffer, length);
    if (file.failed()) {
        return refuse(value(), strerror(errno));
    }
    if (got == 0) {
        return refuse(value(), "it is empty");
    }
    return divisor == 0 || got > length / divisor ? got : 0;
}
