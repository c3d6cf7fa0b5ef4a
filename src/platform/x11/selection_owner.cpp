#include "platform/x11/selection_owner.h"

#include <array>
#include <cstring>
#include <utility>

namespace platform::x11 {

namespace {

/// More pairs than this in one MULTIPLE request are not read.
constexpr std::uint32_t largestPairCount = 64;

SelectionValue valueOfNumbers(xcb_atom_t type, const std::vector<std::uint32_t>& numbers) {
    std::vector<std::uint8_t> bytes(numbers.size() * sizeof(std::uint32_t));
    if (!bytes.empty()) {
        std::memcpy(bytes.data(), numbers.data(), bytes.size());
    }
    return {type, 32, std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes))};
}

/// The pairs of target and property that a MULTIPLE request names; empty when they make no sense.
std::vector<xcb_atom_t> readPairs(Connection& connection, xcb_window_t requestor,
                                  xcb_atom_t property, xcb_atom_t atomPair) {
    const auto cookie = xcb_get_property(connection.get(), 0, requestor, property,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, largestPairCount * 2);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection.get(), cookie, nullptr));
    const bool holdsPairs = reply && reply->format == 32 && reply->bytes_after == 0 &&
                            (reply->type == atomPair || reply->type == XCB_ATOM_ATOM);
    if (!holdsPairs || reply->value_len % 2 != 0) {
        return {};
    }
    const auto* first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

void notify(Connection& connection, const xcb_selection_request_event_t& request,
            xcb_atom_t property) {
    xcb_selection_notify_event_t event{};
    event.response_type = XCB_SELECTION_NOTIFY;
    event.time = request.time;
    event.requestor = request.requestor;
    event.selection = request.selection;
    event.target = request.target;
    event.property = property;
    // The library reads 32 bytes, as long as every event is in the protocol.
    std::array<char, 32> message{};
    std::memcpy(message.data(), &event, sizeof event);
    xcb_send_event(connection.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, message.data());
}

}  // namespace

SelectionOwner::SelectionOwner(Connection& connection, SelectionTransfers& transfers,
                               xcb_window_t window, std::string_view selection)
    : connection_(connection),
      transfers_(transfers),
      window_(window),
      selection_(connection.atom(selection)),
      atoms_{connection.atom("TARGETS"),   connection.atom("TIMESTAMP"),
             connection.atom("MULTIPLE"),  connection.atom("SAVE_TARGETS"),
             connection.atom("ATOM_PAIR"), connection.atom("NULL")} {}

void SelectionOwner::takeOver() {
    release();
    const xcb_timestamp_t now = connection_.serverTime();
    xcb_set_selection_owner(connection_.get(), window_, selection_, now);
    if (isOwnerForServer()) {
        state_ = State::takenOver;
        ownedSince_ = now;
    }
}

void SelectionOwner::offer(std::unique_ptr<SelectionContents> contents) {
    if (state_ != State::takenOver || !isOwnerForServer()) {
        takeOver();
    }
    if (state_ == State::takenOver) {
        state_ = State::owned;
        contents_ = std::move(contents);
    }
}

void SelectionOwner::release() {
    state_ = State::notOwned;
    contents_.reset();
}

bool SelectionOwner::isOwnerForServer() const {
    const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection_.get(), xcb_get_selection_owner(connection_.get(), selection_), nullptr));
    return reply && reply->owner == window_;
}

bool SelectionOwner::isBeforeOwnership(xcb_timestamp_t time) const {
    // The server's time starts again after 49 days: the nearer way round counts.
    return static_cast<std::int32_t>(time - ownedSince_) < 0;
}

void SelectionOwner::handleEvent(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7F) {
        case XCB_SELECTION_REQUEST:
            handleRequest(reinterpret_cast<const xcb_selection_request_event_t&>(event));
            break;
        case XCB_SELECTION_CLEAR:
            handleClear(reinterpret_cast<const xcb_selection_clear_event_t&>(event));
            break;
        default:
            break;
    }
}

void SelectionOwner::handleClear(const xcb_selection_clear_event_t& event) {
    // The word of an earlier loss may arrive after the next ownership began, both within one tick
    // of the server's clock: the server knows better than the time stamps.
    if (event.owner == window_ && event.selection == selection_ && !isOwnerForServer()) {
        release();
    }
}

void SelectionOwner::handleRequest(const xcb_selection_request_event_t& request) {
    if (request.owner != window_) {
        return;
    }
    // Programs from before the present conventions name no property and mean the target's name.
    xcb_atom_t property = request.property == XCB_ATOM_NONE ? request.target : request.property;
    if (!answer(request, property)) {
        property = XCB_ATOM_NONE;
    }
    notify(connection_, request, property);
}

bool SelectionOwner::answer(const xcb_selection_request_event_t& request, xcb_atom_t property) {
    const bool isInTime = request.time == XCB_CURRENT_TIME || !isBeforeOwnership(request.time);
    if (state_ == State::notOwned || request.selection != selection_ || !isInTime) {
        return false;
    }
    state_ = State::owned;
    if (request.target == atoms_.multiple) {
        return request.property != XCB_ATOM_NONE &&
               answerMultiple(request.requestor, request.property);
    }
    return answerOne(request.requestor, request.target, property);
}

bool SelectionOwner::answerOne(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
    const auto value = valueOf(target);
    return value && transfers_.deliver(requestor, property, *value) ==
                        SelectionTransfers::Delivery::accepted;
}

bool SelectionOwner::answerMultiple(xcb_window_t requestor, xcb_atom_t property) {
    auto pairs = readPairs(connection_, requestor, property, atoms_.atomPair);
    if (pairs.empty()) {
        return false;
    }
    for (std::size_t index = 0; index < pairs.size(); index += 2) {
        xcb_atom_t& pairProperty = pairs[index + 1];
        if (pairProperty == XCB_ATOM_NONE || !answerOne(requestor, pairs[index], pairProperty)) {
            pairProperty = XCB_ATOM_NONE;
        }
    }
    // The list goes back with the properties that were not written struck out.
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property,
                        atoms_.atomPair, 32, static_cast<std::uint32_t>(pairs.size()),
                        pairs.data());
    return true;
}

std::optional<SelectionValue> SelectionOwner::valueOf(xcb_atom_t target) {
    if (target == atoms_.targets) {
        return valueOfNumbers(XCB_ATOM_ATOM, offeredTargets());
    }
    if (target == atoms_.timestamp) {
        return valueOfNumbers(XCB_ATOM_INTEGER, {ownedSince_});
    }
    if (!contents_) {
        return std::nullopt;
    }
    if (target == atoms_.saveTargets) {
        return valueOfNumbers(atoms_.null, {});
    }
    return contents_->convert(target);
}

std::vector<std::uint32_t> SelectionOwner::offeredTargets() const {
    std::vector<std::uint32_t> offered;
    if (contents_) {
        // First, because some programs take the first form that they can read.
        offered = contents_->targets();
        offered.push_back(atoms_.saveTargets);
    }
    offered.insert(offered.end(), {atoms_.targets, atoms_.timestamp, atoms_.multiple});
    return offered;
}

}  // namespace platform::x11
