// One application: the page's own one, or one that it started.
#pragma once

#include <memory>
#include <string>

#include "InjectedBundle/gen/js/CApplicationBase.h"

namespace OipfJavaScript {

class jiApplicationPrivateData;

class CApplicationImpl : public CApplicationBase {
 public:
    // -1 names no view.
    explicit CApplicationImpl(int viewId) : m_viewId(viewId) {}

    [[nodiscard]] std::unique_ptr<jiApplicationPrivateData> GetPrivateData();
    void Show();
    void Hide();
    // Whether a child is wanted is not passed on: every new application is the parent's neighbour.
    [[nodiscard]] std::unique_ptr<jiApplication> CreateApplication(JSContextRef context,
                                                                   const std::string& uri, bool child);
    void DestroyApplication();

 private:
    // Null, or why the application cannot be addressed.
    [[nodiscard]] const char* CheckViewId() const;

    int m_viewId;
};

}  // namespace OipfJavaScript
