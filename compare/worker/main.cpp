// ntkturns: one side of a comparison. Runs the tests that its keys (those of ntkperf) select, but
// calls them only when it is told to, see compare/protocol/message.h. Not for people.
#include <cstdio>

#include "channel.h"
#include "ps.h"
#include "psbase.h"
#include "psblockspace.h"
#include "psdenormals.h"
#include "psloaded.h"
#include "pssignal.h"
#include "turnworker.h"

namespace {

using namespace compare;

constexpr int ordersFile = 3;
constexpr int answersFile = 4;

Hello hello() {
    Hello message;
    for (const psString& file : psLoadedLibraries()) {
        message.files.emplace_back(file.c_str());
    }
    if (ntkVersionList) {
        for (const psVersionHook hook : *ntkVersionList) {
            const NtkLibraryVersion* const version = hook();
            message.version = version ? std::string(version->name) + " " + version->version : "";
        }
    }
    return message;
}

} // namespace

int main(int argc, char** argv) {
    psFlushDenormals();
    tsSignal::leaveToSystem(); // whoever started the worker sees by which signal it ended
    psAlignSpacesToPages(true);
    Channel channel(ordersFile, answersFile);
    TurnWorker worker(channel);
    g_turnTaker = &worker;
    psRegRecordWriter(worker);
    channel.say(hello());
    psSession().run(argc, argv);
    worker.finish();
    return 0;
}
