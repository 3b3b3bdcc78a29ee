#include "JavaScript/Src/COipfParentalControlManagerImpl.h"

#include <vector>

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiParentalRatingSchemeCollection.h"
#include "JavaScript/Src/CParentalRatingImpl.h"
#include "JavaScript/Src/CParentalRatingSchemeCollectionImpl.h"
#include "JavaScript/Src/CParentalRatingSchemeImpl.h"

namespace OipfJavaScript {

std::unique_ptr<jiParentalRatingSchemeCollection> COipfParentalControlManagerImpl::GetParentalRatingSchemes()
    const {
    HBBTV_LOG_INFO("[%s:%d] %s", "PARENTALCONTROLMANAGER", __LINE__, __func__);
    std::vector<jiParentalRatingScheme> schemes;
    schemes.emplace_back(std::make_unique<CParentalRatingSchemeImpl>(CParentalRatingImpl::kDvbSi));
    return MakeBinding<jiParentalRatingSchemeCollection>(std::move(schemes));
}

}  // namespace OipfJavaScript
