#include "core/RunTypes.h"

#include <utility>

namespace vantorel {
namespace {

constexpr std::pair<WriteStatus, std::string_view> kStatusNames[] = {
    {WriteStatus::Written, "written"},
    {WriteStatus::ReadOnly, "read-only"},
    {WriteStatus::OutsideStartFolder, "outside-start-folder"},
    {WriteStatus::NotExactText, "not-exact-text"},
    {WriteStatus::ForeignOwner, "foreign-owner"},
    {WriteStatus::BackupFailed, "backup-failed"},
    {WriteStatus::ChangedMeanwhile, "changed-meanwhile"},
    {WriteStatus::Failed, "failed"},
};

}  // namespace

std::string_view writeStatusName(WriteStatus status) noexcept {
    for (const auto& [known, name] : kStatusNames)
        if (known == status) return name;
    return "failed";
}

std::optional<WriteStatus> writeStatusNamed(std::string_view name) noexcept {
    for (const auto& [status, known] : kStatusNames)
        if (known == name) return status;
    return std::nullopt;
}

}  // namespace vantorel
