#include "dctest.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "psvalue.h"

bool passed(int status, const char* name) {
    return !psIsFail(kxTest::checkStatus(status, name));
}

bool arePossible(const dcLengths& lengths, const psString& function) {
    return std::all_of(lengths.begin(), lengths.end(), [&function](const dcLength& length) {
        return kxTest::isPossible(length.value, length.least, length.most, length.what, function);
    });
}

bool isSize(long long bytes, const char* function) {
    return arePossible({{"size", bytes, 1, INT_MAX}}, function);
}

// ---- Allocation -------------------------------------------------------------------------------

bool createVectors(std::initializer_list<kxVector*> vectors, int elements) {
    return std::all_of(vectors.begin(), vectors.end(),
                       [elements](kxVector* vector) { return vector->createVector(elements); });
}

bool createBlock(Ntk8u*& block, int bytes, int misalignment) {
    block = static_cast<Ntk8u*>(psTest::allocate(bytes, misalignment));
    return block != nullptr;
}

bool createState(Ntk8u*& state, int bytes) {
    state = static_cast<Ntk8u*>(psMalloc(bytes, 0, 0, MEM_OBJECT_IS_BUFFER));
    return state != nullptr;
}

void release(std::initializer_list<kxVector*> vectors, std::initializer_list<Ntk8u**> blocks) {
    for (kxVector* const vector : vectors) {
        vector->deleteVector();
    }
    for (Ntk8u** const block : blocks) {
        psFree(*block);
        *block = nullptr;
    }
}

// ---- Text line and values ---------------------------------------------------------------------

const psParameter* dcTest::variant() const {
    return nullptr;
}

std::optional<double> dcTest::ratio() const {
    return std::nullopt;
}

void dcTest::parmsToOstrm() {
    g_ostrm << "length=" << psText(length()) << " ";
    psTest::parmsToOstrm();
}

void dcBlockTest::parmsToOstrm() {
    g_ostrm << " length=" << psText(length()) << " ";
    g_codeFile.toOStream(g_ostrm);
}

// The columns are those of parmColumns in kxdc.cpp.
void dcTest::addKeys(psNamedValues& values) {
    values.add("Length", length());
    values.add("CodeFile", inputName());
    if (const psParameter* const parm = variant()) {
        values.add("Variant", parm->valueString());
    }
}

void dcTest::addValues(psNamedValues& values) {
    addKeys(values);
    const std::optional<double> value = m_isPossible ? ratio() : std::nullopt;
    if (value && std::isfinite(*value) && *value > 0) {
        values.add("Ratio", *value);
    }
}

bool dcTest::hasPossibleResult() {
    m_isPossible = arePossible(lengthsLeft(), functionName());
    return m_isPossible;
}

// ---- Preparation ------------------------------------------------------------------------------

bool dcTest::isWithin(const psIterator_NSC<int>& parm, int largest) {
    const int value = parm.value();
    if (value >= 1 && value <= largest) {
        return true;
    }
    g_ostrm << PS_ERR << "-- " << parm.name() << "=" << value << " is not within 1 to " << largest
            << "\n"
            << PS_END;
    return false;
}

bool dcFileTest::canStart() {
    regParm(lengthParm());
    regParm(g_codeFile);
    return true;
}

// The buffers have twice the length, so that what does not compress fits, too.
int dcFileTest::largestLength() const {
    return INT_MAX / 2;
}

bool dcFileTest::initData() {
    return isWithin(lengthParm(), largestLength()) && createBuffers() && readFile() >= 1 &&
           prepare();
}

// Without readCodeFile's comparison with the length before: there is none.
int dcBlockTest::readInto(void* buffer) {
    return g_codeFile.readData(buffer, lengthParm().value(), 0);
}
