#include "pstestrun.h"

#include <algorithm>

#include "pspriority.h"

psRunCheckpoint::psRunCheckpoint()
    : m_outLevel(g_ostrm.outLevel()), m_levelDepth(g_ostrm.levelDepth()),
      m_traceDepth(g_trace.depth()), m_openFiles(psOpenFileMark()) {
    for (void* block = psMallocFirst(); block; block = psMallocNext()) {
        m_blocks.append(block);
    }
}

void psRunCheckpoint::restoreStreams() const {
    g_ostrm.unwindLevels(m_levelDepth);
    g_ostrm.setOutLevel(m_outLevel);
    g_trace.unwind(m_traceDepth);
    psResetPriority();
}

void psRunCheckpoint::releaseBlocks() const {
    psList<void*> lost;
    for (void* block = psMallocFirst(); block; block = psMallocNext()) {
        if (std::find(m_blocks.begin(), m_blocks.end(), block) == m_blocks.end()) {
            lost.append(block);
        }
    }
    for (void* block : lost) {
        psFree(block);
    }
    psCloseFilesSince(m_openFiles);
}
