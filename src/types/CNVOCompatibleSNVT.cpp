#include "types/CNVOCompatibleSNVT.h"

namespace kolvane {

std::string CNVOCompatibleSNVT::ICompatibleSNVT_ID() const { return id_; }

void CNVOCompatibleSNVT::SetID(const std::string& id) { id_ = id; }

}  // namespace kolvane
