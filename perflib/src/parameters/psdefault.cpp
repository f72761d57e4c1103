#include "psdefault.h"

#include "psiterator.h"

psString psJoined(const psStringList& texts, const char* separator) {
    psString joined;
    const char* between = "";
    for (const psString& text : texts) {
        joined << between << text;
        between = separator;
    }
    return joined;
}

template class psDefault_NSC<int>;
template class psDefault_NSC<bool>;
template class psDefault_NSC<psString>;
template class psMapDefault<int>;
template class psMapDefault<bool>;
template class psIterator_NSC<int>;
template class psIterator_NSC<bool>;
template class psIterator_NSC<psString>;
