// "/sbin/backup.sh" N: saves the host configuration to its boot bank; the
// runs are counted in "configBackup".
#include "sim/tools.h"
#include "sim/tools/toolkit.h"

namespace Sim::Tools {
namespace {

int BackupMain(int argc, char** argv) {
    auto args = Arguments(argc, argv);
    if (args.size() != 1) return Fail(ToolName(argv[0]), "usage: backup.sh 0|1", 2);
    Sim::Update([&](Json& state) {
        Json& record = Section(state, "configBackup");
        record["runs"] = record.value("runs", 0) + 1;
        record["lastArgument"] = args[0];
    });
    return 0;
}

}  // namespace

SIM_TOOL({"/sbin/backup.sh"}, &BackupMain);

}  // namespace Sim::Tools
