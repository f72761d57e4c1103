#include "psobject.h"

#include "psstring.h"

psString psObject::objectInfo() const {
    return psString();
}
