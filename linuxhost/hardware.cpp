#include "linuxhost/hardware.h"

#include <unistd.h>

#include <set>
#include <sstream>

#include "hostctl/exception.h"
#include "linuxhost/host_files.h"

namespace LinuxHost {
namespace {

using HostCtl::Lib::HostCtlException;

std::string Trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// The fields that name a processor's model, by architecture (x86, Arm and
// others, MIPS), best first.
constexpr const char* kModelFields[] = {"model name", "Model", "cpu model", "cpu"};

}  // namespace

std::string HardwareInfoImpl::GetVendorName() const {
    return ReadHostLine("/sys/class/dmi/id/sys_vendor");
}

std::string HardwareInfoImpl::GetProductName() const {
    std::string product = ReadHostLine("/sys/class/dmi/id/product_name");
    if (product.empty()) {
        // The device tree's model ends with a NUL.
        product = ReadHostLine("/proc/device-tree/model");
        product = product.substr(0, product.find('\0'));
    }
    return product.empty() ? kUnidentifiedMachine : product;
}

CpuSummary SummariseCpuInfo(std::string_view cpuinfo) {
    CpuSummary summary;
    std::set<std::string> packages;
    int processors = 0;
    std::size_t modelRank = std::size(kModelFields);
    std::istringstream lines{std::string(cpuinfo)};
    for (std::string line; std::getline(lines, line);) {
        const auto colon = line.find(':');
        if (colon == std::string::npos) continue;
        const std::string key = Trim(line.substr(0, colon));
        const std::string value = Trim(line.substr(colon + 1));
        if (key == "processor") ++processors;
        if (key == "physical id") packages.insert(value);
        for (std::size_t rank = 0; rank < modelRank; ++rank) {
            if (key != kModelFields[rank] || value.empty()) continue;
            summary.model = value;
            modelRank = rank;
        }
    }
    if (processors > 0) summary.packages = packages.empty() ? 1 : static_cast<int>(packages.size());
    return summary;
}

namespace {

CpuSummary ReadCpus() {
    const auto text = ReadHostFile("/proc/cpuinfo");
    if (!text) throw HostCtlException("The processor information (/proc/cpuinfo) cannot be read");
    CpuSummary summary = SummariseCpuInfo(*text);
    if (summary.packages == 0) throw HostCtlException("/proc/cpuinfo lists no processor");
    return summary;
}

}  // namespace

std::int32_t CpuInfoImpl::GetNumCpuPackages() const {
    return ReadCpus().packages;
}

std::string CpuInfoImpl::GetModelName() const {
    return ReadCpus().model;
}

std::uint64_t MemoryInfoImpl::GetTotalPages() const {
    const auto text = ReadHostFile("/proc/meminfo");
    if (!text) throw HostCtlException("The memory information (/proc/meminfo) cannot be read");
    std::istringstream lines(*text);
    for (std::string line; std::getline(lines, line);) {
        unsigned long long kib = 0;
        char unit[8] = {};
        if (std::sscanf(line.c_str(), "MemTotal: %llu %7s", &kib, unit) == 2 &&
            std::string(unit) == "kB")
            return kib * 1024ULL / GetPageSize();
    }
    throw HostCtlException("/proc/meminfo has no MemTotal line");
}

std::uint64_t MemoryInfoImpl::GetPageSize() const {
    const long size = ::sysconf(_SC_PAGESIZE);
    return size > 0 ? static_cast<std::uint64_t>(size) : 4096;
}

}  // namespace LinuxHost
