// The rating schemes that the receiver knows, in a fixed order.
#pragma once

#include <memory>
#include <string>

#include "InjectedBundle/gen/js/CParentalRatingSchemeCollectionBase.h"
#include "InjectedBundle/gen/js/jiParentalRatingScheme.h"
#include "JavaScript/Src/BindingCollection.h"

namespace OipfJavaScript {

class CParentalRatingSchemeCollectionImpl
    : public BindingCollection<CParentalRatingSchemeCollectionBase, jiParentalRatingScheme> {
 public:
    using BindingCollection::BindingCollection;

    // Upper and lower case are told apart; undefined when no scheme has the name.
    [[nodiscard]] std::unique_ptr<jiParentalRatingScheme> GetParentalRatingScheme(const std::string& name);
};

}  // namespace OipfJavaScript
