#include "psoption.h"

psString psOption::report(const psString& argument) const {
    return info ? info(argument) : "ignored: deprecated option key";
}

void psOptionList::initOption(char key, const psString& help, psOption::Info info,
                              psOption::Apply apply, const psString& detail, bool hidden) {
    append({key, hidden, help, info, apply, detail});
}

psOption* psOptionList::getOption(char key) {
    for (psOption& option : *this) {
        if (option.key == key) {
            return &option;
        }
    }
    return nullptr;
}
