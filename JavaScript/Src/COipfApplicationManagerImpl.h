// The application manager: a page finds its own application here, and hears what happens to it.
#pragma once

#include <memory>

#include "API/Src/IPluginController.h"
#include "InjectedBundle/gen/js/COipfApplicationManagerBase.h"

namespace OipfJavaScript {

class jiApplication;

class COipfApplicationManagerImpl final : public COipfApplicationManagerBase, public IPluginController {
 public:
    // Asks the browser for the page's view; without one the manager hears no events.
    COipfApplicationManagerImpl();
    ~COipfApplicationManagerImpl() override;

    // A new object each time; null when the page has no view.
    [[nodiscard]] std::unique_ptr<jiApplication> GetOwnerApplication() const;

    void OnEvent(event_t event) override;

 private:
    int m_viewId = -1;
};

}  // namespace OipfJavaScript
