#include "psdefault.h"

#include <string>

#include "psiterator.h"

psString psJoined(const psStringList& texts, const char* separator) {
    std::string joined; // grows by doubling: a list may have a hundred thousand values
    const char* between = "";
    for (const psString& text : texts) {
        joined.append(between).append(text.c_str());
        between = separator;
    }
    return joined.c_str();
}

template class psDefault_NSC<int>;
template class psDefault_NSC<bool>;
template class psDefault_NSC<psString>;
template class psMapDefault<int>;
template class psMapDefault<bool>;
template class psIterator_NSC<int>;
template class psIterator_NSC<bool>;
template class psIterator_NSC<psString>;
