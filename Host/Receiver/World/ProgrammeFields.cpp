#include "Host/Receiver/World/ProgrammeFields.h"

#include <algorithm>
#include <charconv>
#include <compare>
#include <memory>
#include <optional>
#include <utility>

#include <glib.h>

namespace Receiver {

namespace {

using FieldValue = std::variant<std::string, std::int64_t>;

std::string folded(const std::string& text) {
    const std::unique_ptr<char, decltype(&g_free)> result(
        g_utf8_casefold(text.data(), static_cast<gssize>(text.size())), g_free);
    return result.get();
}

bool isCrid(const std::string& id) {
    return folded(id).starts_with("crid:");
}

std::int64_t durationOf(const Programme& programme) {
    return std::int64_t{programme.durationMinutes} * 60;
}

std::optional<FieldValue> fieldOf(const FoundProgramme& found, std::uint32_t field, bool asText) {
    const auto& programme = *found.programme;
    switch (static_cast<QueryField>(field)) {
        case QueryField::Name:
            return programme.name;
        case QueryField::Description:
            return programme.description;
        case QueryField::LongName:
        case QueryField::LongDescription:
            return std::string();
        case QueryField::StartTime:
            return found.start;
        case QueryField::EndTime:
            return found.start + durationOf(programme);
        case QueryField::Duration:
            return durationOf(programme);
        case QueryField::ChannelId:
            return asText ? FieldValue(found.channel->ccid) : FieldValue(std::int64_t{found.channel->id});
        case QueryField::ProgrammeId:
            return folded(programme.id);
        case QueryField::ProgrammeIdType:
            return std::int64_t{isCrid(programme.id) ? 0 : 1};
        case QueryField::ParentalRating:
            return std::int64_t{programme.rating};
        case QueryField::Any:
        case QueryField::Episode:
        case QueryField::TotalEpisodes:
            break;
    }
    return std::nullopt;
}

std::optional<std::int64_t> numberOf(const QueryValue& value) {
    if (const auto* number = std::get_if<std::uint32_t>(&value))
        return *number;
    const auto& text = std::get<std::string>(value);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

template <typename Number>
std::string textOf(const std::variant<std::string, Number>& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? *text : std::to_string(std::get<Number>(value));
}

bool holds(std::strong_ordering order, QueryMode mode) {
    switch (mode) {
        case QueryMode::Equal:
            return std::is_eq(order);
        case QueryMode::NotEqual:
            return std::is_neq(order);
        case QueryMode::Greater:
            return std::is_gt(order);
        case QueryMode::GreaterOrEqual:
            return std::is_gteq(order);
        case QueryMode::Less:
            return std::is_lt(order);
        case QueryMode::LessOrEqual:
            return std::is_lteq(order);
        case QueryMode::Contains:
            break;
    }
    return false;
}

}  // namespace

bool isQueryField(std::uint32_t field) {
    return field <= static_cast<std::uint32_t>(QueryField::EndTime);
}

bool isQueryMode(std::uint32_t mode) {
    return mode <= static_cast<std::uint32_t>(QueryMode::Contains);
}

bool matches(const FoundProgramme& found, std::uint32_t field, std::uint32_t mode, const QueryValue& wanted) {
    if (static_cast<QueryField>(field) == QueryField::Any)
        return true;
    const auto value = fieldOf(found, field, std::holds_alternative<std::string>(wanted));
    if (!value)
        return false;
    const auto comparison = static_cast<QueryMode>(mode);
    if (comparison == QueryMode::Contains)
        return folded(textOf(*value)).find(folded(textOf(wanted))) != std::string::npos;
    const auto* number = std::get_if<std::int64_t>(&*value);
    const auto wantedNumber = numberOf(wanted);
    if (number != nullptr && wantedNumber)
        return holds(*number <=> *wantedNumber, comparison);
    const bool isId = static_cast<QueryField>(field) == QueryField::ProgrammeId;
    return holds(textOf(*value) <=> (isId ? folded(textOf(wanted)) : textOf(wanted)), comparison);
}

ConstraintSet::ConstraintSet(const std::vector<Constraint>& constraints) {
    for (const auto& [field, value] : constraints) {
        auto& alternatives = m_byField[field];
        if (const auto* number = std::get_if<std::uint32_t>(&value))
            alternatives.numbers.insert(*number);
        else
            alternatives.texts.push_back(std::get<std::string>(value));
    }
}

bool ConstraintSet::satisfiedBy(const FoundProgramme& found) const {
    return std::ranges::all_of(m_byField, [&found](const auto& constraint) {
        const auto& [field, alternatives] = constraint;
        const auto equals = [&found, field](const QueryValue& value) {
            return matches(found, field, static_cast<std::uint32_t>(QueryMode::Equal), value);
        };
        const auto value = fieldOf(found, field, false);
        const auto* number = value ? std::get_if<std::int64_t>(&*value) : nullptr;
        if (number != nullptr && std::in_range<std::uint32_t>(*number) &&
            alternatives.numbers.contains(static_cast<std::uint32_t>(*number)))
            return true;
        if (number == nullptr && std::ranges::any_of(alternatives.numbers, equals))
            return true;
        return std::ranges::any_of(alternatives.texts, equals);
    });
}

bool comesFirst(const FoundProgramme& left, const FoundProgramme& right, const OrderBy& orderBy) {
    for (const auto& [field, ascending] : orderBy) {
        const auto ofLeft = fieldOf(left, field, false);
        const auto ofRight = fieldOf(right, field, false);
        if (ofLeft && ofRight && *ofLeft != *ofRight)
            return ascending ? *ofLeft < *ofRight : *ofRight < *ofLeft;
    }
    return false;
}

}  // namespace Receiver
