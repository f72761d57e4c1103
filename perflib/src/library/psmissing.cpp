#include "psmissing.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

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

// The program's table of the functions that it calls in shared objects: names, and the slots
// through which the calls go.
struct CallTable {
    const ElfW(Rela) * slots = nullptr;
    size_t bytes = 0;
    const ElfW(Sym) * symbols = nullptr;
    const char* texts = nullptr;
    ElfW(Addr) base = 0;

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
            default: break;
            }
        }
    }
};

// Of the first object, which is the program.
int readTable(dl_phdr_info* object, size_t, void* table) {
    auto& calls = *static_cast<CallTable*>(table);
    calls.base = object->dlpi_addr;
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        if (object->dlpi_phdr[i].p_type == PT_DYNAMIC) {
            calls.read(reinterpret_cast<const ElfW(Dyn)*>(object->dlpi_addr +
                                                          object->dlpi_phdr[i].p_vaddr));
        }
    }
    return 1;
}

void standInFor(const char* name, ElfW(Addr) slot) {
    g_names[g_count] = name;
    *reinterpret_cast<StandIn*>(slot) = standIns[static_cast<size_t>(g_count)];
    ++g_count;
}

} // namespace

// In a program that is not linked lazily the slots cannot be written, but none is missing there.
void psStandInForMissingFunctions() {
    if (g_count != 0) {
        return;
    }
    CallTable calls;
    dl_iterate_phdr(readTable, &calls);
    for (size_t i = 0; i < calls.bytes / sizeof *calls.slots; ++i) {
        const ElfW(Rela)& slot = calls.slots[i];
        const char* const name = calls.texts + calls.symbols[ELF64_R_SYM(slot.r_info)].st_name;
        if (ELF64_R_TYPE(slot.r_info) == R_X86_64_JUMP_SLOT &&
            strncmp(name, prefix, strlen(prefix)) == 0 && !dlsym(RTLD_DEFAULT, name) &&
            g_count < mostStandIns) {
            standInFor(name, calls.base + slot.r_offset);
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
