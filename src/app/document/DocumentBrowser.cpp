#include "app/document/DocumentBrowser.h"

namespace volvelle {

std::weak_ptr<DocumentBrowser> browserViewController;

} // namespace volvelle
