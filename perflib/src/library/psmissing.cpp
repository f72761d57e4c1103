#include "psmissing.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "pslist.h"
#include "psloaded.h"

namespace {

constexpr const char* prefix = "ntk"; // of the measured library's functions
constexpr int mostStandIns = 256;     // far more than the library has functions

constinit const char* g_names[mostStandIns] = {};
constinit int g_count = 0;

using StandIn = void (*)();

// Takes what its caller passes and never returns, so that no signature has to be known.
template <int Index> void standIn() {
    throw psMissingFunction(g_names[Index]);
}

template <int... Index>
constexpr std::array<StandIn, sizeof...(Index)> standInsOf(std::integer_sequence<int, Index...>) {
    return {standIn<Index>...};
}
constexpr auto standIns = standInsOf(std::make_integer_sequence<int, mostStandIns>{});

// An object's table of the functions that it calls in other shared objects: names, and the slots
// through which the calls go.
struct CallTable {
    const char* object = "";
    const ElfW(Rela) * slots = nullptr;
    size_t bytes = 0;
    const ElfW(Sym) * symbols = nullptr;
    const char* texts = nullptr;
    ElfW(Addr) base = 0;
    bool isLazy = true;

    // The loader has made most addresses absolute, but it need not.
    template <class T> void set(const T*& pointer, ElfW(Addr) address) const {
        pointer = reinterpret_cast<const T*>(address < base ? address + base : address);
    }
    void read(const ElfW(Dyn) * entry) {
        for (; entry->d_tag != DT_NULL; ++entry) {
            switch (entry->d_tag) {
            case DT_JMPREL: set(slots, entry->d_un.d_ptr); break;
            case DT_PLTRELSZ: bytes = entry->d_un.d_val; break;
            case DT_SYMTAB: set(symbols, entry->d_un.d_ptr); break;
            case DT_STRTAB: set(texts, entry->d_un.d_ptr); break;
            case DT_BIND_NOW: isLazy = false; break;
            case DT_FLAGS: isLazy = isLazy && !(entry->d_un.d_val & DF_BIND_NOW); break;
            case DT_FLAGS_1: isLazy = isLazy && !(entry->d_un.d_val & DF_1_NOW); break;
            default: break;
            }
        }
    }
};

// Of the program, which is the first object, and of the library's, which call each other.
int readTable(dl_phdr_info* object, size_t, void* tables) {
    auto& list = *static_cast<psList<CallTable>*>(tables);
    if (!list.empty() && !psString(object->dlpi_name).getFileName().startsWith("libntk")) {
        return 0;
    }
    CallTable calls;
    calls.object = object->dlpi_name;
    calls.base = object->dlpi_addr;
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        if (object->dlpi_phdr[i].p_type == PT_DYNAMIC) {
            calls.read(reinterpret_cast<const ElfW(Dyn)*>(object->dlpi_addr +
                                                          object->dlpi_phdr[i].p_vaddr));
        }
    }
    list.append(calls);
    return 0;
}

bool isThere(const char* name, void* object) {
    return dlsym(RTLD_DEFAULT, name) || (object && dlsym(object, name));
}

void standInFor(const char* name, ElfW(Addr) slot) {
    const auto known = std::find_if(g_names, g_names + g_count, [name](const char* missing) {
        return strcmp(missing, name) == 0;
    });
    if (known == g_names + mostStandIns) {
        return;
    }
    *known = name;
    *reinterpret_cast<StandIn*>(slot) = standIns[static_cast<size_t>(known - g_names)];
    g_count = std::max(g_count, static_cast<int>(known - g_names) + 1);
}

// An object may have been loaded with a view of its own of what there is.
void standInForMissingOf(const CallTable& calls) {
    void* const object = *calls.object ? dlopen(calls.object, RTLD_LAZY | RTLD_NOLOAD) : nullptr;
    for (size_t i = 0; i < calls.bytes / sizeof *calls.slots; ++i) {
        const ElfW(Rela)& slot = calls.slots[i];
        const ElfW(Sym)& symbol = calls.symbols[ELF64_R_SYM(slot.r_info)];
        const char* const name = calls.texts + symbol.st_name;
        if (ELF64_R_TYPE(slot.r_info) == R_X86_64_JUMP_SLOT &&
            ELF64_ST_BIND(symbol.st_info) != STB_WEAK &&
            strncmp(name, prefix, strlen(prefix)) == 0 && !isThere(name, object)) {
            standInFor(name, calls.base + slot.r_offset);
        }
    }
    if (object) {
        dlclose(object);
    }
}

} // namespace

// The slots of what is not linked lazily cannot be written, but none is missing there.
void psStandInForMissingFunctions() {
    if (g_count != 0) {
        return;
    }
    psList<CallTable> tables;
    dl_iterate_phdr(readTable, &tables);
    for (const CallTable& calls : tables) {
        if (calls.isLazy) {
            standInForMissingOf(calls);
        }
    }
}

bool psIsMissingFunction(const psString& name) {
    return std::any_of(g_names, g_names + g_count,
                       [&name](const char* missing) { return name == missing; });
}

psString psNoFunctionText(const psString& name) {
    psString files;
    for (const psString& file : psLoadedLibraries()) {
        files += (files.empty() ? "" : ", ") + file;
    }
    return "the library has no function " + name + " (" + files + ")";
}

psString psMissingFunctionText(const psString& name) {
    return dlsym(RTLD_DEFAULT, name.c_str()) ? psString() : psNoFunctionText(name);
}
