#pragma once

#include <array>
#include <climits>

// The clocks of the timed spans of one measurement, for its spread: a disturbed measurement shows
// in the distance of its middle span from its smallest. Fed between two spans, never inside one;
// of a fixed size, as a run of long duration has millions of spans: when it is full every other one
// is dropped, and from then on only every second one is kept.
class psBatches {
public:
    void clear() { m_kept = 0, m_seen = 0, m_stride = 1, m_smallest = LLONG_MAX, m_sum = 0; }
    void add(long long clocks) {
        m_smallest = clocks < m_smallest ? clocks : m_smallest;
        m_sum += clocks;
        if (m_seen++ % m_stride == 0) {
            if (m_kept == capacity) {
                thin();
            }
            m_clocks[static_cast<unsigned>(m_kept++)] = clocks;
        }
    }
    long long count() const { return m_seen; }
    // Of all spans, dropped ones too; 0 without any.
    long long smallest() const { return m_seen ? m_smallest : 0; }
    long long sum() const { return m_sum; } // of all spans, dropped ones too
    // By how much the middle span is longer than the smallest, relative to it; 0 for less than two
    // spans, or when the smallest took no clocks.
    double spread() const;

private:
    static constexpr int capacity = 1024;
    void thin();

    std::array<long long, capacity> m_clocks{};
    int m_kept = 0;
    long long m_seen = 0;
    long long m_stride = 1;
    long long m_smallest = LLONG_MAX;
    long long m_sum = 0;
};

// Of the measurement that runs; the timing functions of a test have no tool to ask.
extern psBatches g_batches;
