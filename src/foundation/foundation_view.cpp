#include "foundation/foundation_view.h"

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"

FoundationView gFoundationView;

void PrintToConsole(const char* text) {
    gFoundationView.printToConsole(text);
}

BoxAnswer ShowMessageBox(const char* text, const char* caption, BoxButtons buttons, BoxIcon icon) {
    if (caption != nullptr) return gFoundationView.showMessageBox(text, caption, buttons, icon);
    const std::string product = CatalogueText(MSG_LONG_PRODUCT_NAME);
    return gFoundationView.showMessageBox(text, product.empty() ? "Zarn32" : product.c_str(), buttons, icon);
}
