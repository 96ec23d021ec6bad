// "/bin/openssl": the certificate thumbprints of the support information.
//   openssl x509 -in FILE -noout -fingerprint [-sha1|-sha256|-md5]
//   openssl version
// The thumbprints come from "certificate" ({"sha1": ..., "sha256": ...,
// "md5": ...}); the file must exist in the host root.
#include <unistd.h>

#include <iostream>

#include "platform/hostroot.h"
#include "sim/tools.h"
#include "sim/tools/toolkit.h"

namespace Sim::Tools {
namespace {

constexpr const char kTool[] = "openssl";

int OpensslMain(int argc, char** argv) {
    auto args = Arguments(argc, argv);
    if (args == std::vector<std::string>{"version"}) {
        std::cout << "OpenSSL 3.0 (simulated host)\n";
        return 0;
    }
    auto file = OptionValue(args, "-in");
    bool fingerprint = false;
    std::string digest = "sha1";
    for (const auto& a : args) {
        if (a == "-fingerprint") fingerprint = true;
        if (a == "-sha1" || a == "-sha256" || a == "-md5") digest = a.substr(1);
    }
    if (args.empty() || args[0] != "x509" || !file || !fingerprint)
        return Fail(kTool, "usage: openssl x509 -in FILE -noout -fingerprint [-sha1|-sha256|-md5]",
                    1);
    if (::access(Tesk::Platform::HostPath(*file).c_str(), R_OK) != 0)
        return Fail(kTool, "Could not open file or uri for loading certificate from " + *file);
    auto value = Sim::Get("/certificate/" + digest);
    if (!value || !value->is_string()) return Fail(kTool, "unable to load certificate");
    std::string name = digest;
    for (auto& c : name) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    std::cout << name << " Fingerprint=" << value->get<std::string>() << "\n";
    return 0;
}

}  // namespace

SIM_TOOL({"/bin/openssl"}, &OpensslMain);

}  // namespace Sim::Tools
