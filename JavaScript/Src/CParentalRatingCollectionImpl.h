// Ratings in the order in which they were added.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "InjectedBundle/gen/js/CParentalRatingCollectionBase.h"
#include "InjectedBundle/gen/js/jiParentalRating.h"
#include "JavaScript/Src/BindingCollection.h"

namespace OipfJavaScript {

class CParentalRatingCollectionImpl
    : public BindingCollection<CParentalRatingCollectionBase, jiParentalRating> {
 public:
    // Changes nothing in the receiver.
    void AddParentalRating(const std::string& scheme, const std::string& name, int32_t value, int32_t labels,
                           const std::optional<std::string>& region);
    // An age as the receiver knows it.
    void AddAge(int32_t age);
};

}  // namespace OipfJavaScript
