#include "viewer/zel_extensionmodule.h"

namespace zel {

zel_ExtensionModule::~zel_ExtensionModule() = default;

} // namespace zel
