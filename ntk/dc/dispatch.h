// The choice among the kernels of one primitive.
//
// A primitive with several kernels has one constant table of named candidates, the best one first
// and the generic one last. The choice follows the enabled features at every call; it costs a load
// and a comparison, because the candidate chosen last is cached with the features that it was
// chosen for.
#pragma once

#include <atomic>
#include <cstddef>

#include "ntkcore.h"

namespace ntk {

template <class Function> struct Candidate {
    const char* name;
    // Features without which the kernel cannot run.
    Ntk64u needs;
    // Features that a packaged library's own dispatch may pick: it looks at the processor, not at
    // what is enabled here. The kernel is skipped if one of them is present but not enabled.
    Ntk64u ownDispatchUses;
    Function* run;
};

// A table of candidates to iterate over.
template <class Function> struct CandidateList {
    const Candidate<Function>* first;
    std::size_t count;

    const Candidate<Function>* begin() const { return first; }
    const Candidate<Function>* end() const { return first + count; }
};

// Whether the kernel may run with these features enabled on a machine that has those.
template <class Function>
constexpr bool isEligible(const Candidate<Function>& c, Ntk64u enabled, Ntk64u machine) {
    const Ntk64u wanted = c.needs | (c.ownDispatchUses & machine);
    return (wanted & ~enabled) == 0;
}

// Index of the first eligible candidate. The last one, the generic kernel, needs nothing.
template <class Function>
constexpr std::size_t bestCandidate(const CandidateList<Function>& list, Ntk64u enabled,
                                    Ntk64u machine) {
    std::size_t i = 0;
    while (i + 1 < list.count && !isEligible(list.first[i], enabled, machine)) {
        ++i;
    }
    return i;
}

// The current kernel of one primitive. Constant-initialised; may be used by any thread.
template <class Function> class Choice {
public:
    template <std::size_t N>
    constexpr explicit Choice(const Candidate<Function> (&table)[N]) : m_list{table, N} {
        static_assert(N < (1U << indexBits));
    }

    Function* get() noexcept {
        const Ntk64u enabled = ntkGetEnabledCpuFeatures();
        const Ntk64u chosen = m_chosen.load(std::memory_order_relaxed);
        const bool isCurrent = (chosen >> indexBits) == enabled;
        return m_list.first[isCurrent ? chosen & indexMask : choose(enabled)].run;
    }

    const CandidateList<Function>& candidates() const { return m_list; }

private:
    static constexpr int indexBits = 8;
    static constexpr Ntk64u indexMask = (1U << indexBits) - 1;

    std::size_t choose(Ntk64u enabled) noexcept {
        Ntk64u machine = 0;
        ntkGetCpuFeatures(&machine, nullptr);
        const std::size_t index = bestCandidate(m_list, enabled, machine);
        m_chosen.store((enabled << indexBits) | index, std::memory_order_relaxed);
        return index;
    }

    CandidateList<Function> m_list;
    // Features and index in one word, so that no thread sees one without the other. Feature masks
    // have fewer than 56 bits; all bits set means that nothing is chosen yet.
    std::atomic<Ntk64u> m_chosen{~0ULL};
};

} // namespace ntk
