#pragma once

class psString;

// Root of the objects that report their size and describe themselves: test vectors, images and
// strings. The cache iteration asks for the size, the memory dump for the description.
class psObject {
public:
    constexpr psObject() = default;
    psObject(const psObject&) = default;
    psObject& operator=(const psObject&) = default;
    constexpr virtual ~psObject() = default;

    // Bytes of data that a measured call touches in this object; 0 when it holds none.
    virtual int objectSize() const { return 0; }
    // One line for a person, without a line end; empty when there is nothing to say.
    virtual psString objectInfo() const;

    // A reserved copy is a private second copy of the data, made before a measurement
    // (reserveCopy), written back before each timed call (setReservedCopy) and dropped at the end
    // (deleteReservedCopy). Objects without data do nothing. False: no memory for the copy.
    virtual bool reserveCopy() { return true; }
    virtual void setReservedCopy() {}
    virtual void deleteReservedCopy() {}
};
