#pragma once

#include <xcb/xcb.h>

#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/selection_contents.h"
#include "platform/x11/selection_transfers.h"

namespace platform::x11 {

/// Owns one selection and answers for it: the contents' own targets, and those that every owner
/// has. Lets the contents go as soon as another program takes the selection. Main thread.
class SelectionOwner {
  public:
    /// `window` is this program's own and outlives this object, as `transfers` does.
    SelectionOwner(Connection& connection, SelectionTransfers& transfers, xcb_window_t window,
                   std::string_view selection);

    /// Owns the selection when it returns, unless another program took it in that very moment:
    /// three round trips. Empty until something is offered.
    void takeOver();
    /// As `takeOver`, with something to offer. Right after a `takeOver` that nobody has noticed yet
    /// the ownership stays, so that a program that watches the selection sees one change.
    void offer(std::unique_ptr<SelectionContents> contents);
    /// Null when nothing is offered.
    [[nodiscard]] const SelectionContents* contents() const { return contents_.get(); }

    void handleEvent(const xcb_generic_event_t& event);

  private:
    enum class State {
        notOwned,
        /// Owned and empty, and nobody has asked for anything yet.
        takenOver,
        owned,
    };
    /// The atoms of the targets that every owner answers.
    struct Targets {
        xcb_atom_t targets;
        xcb_atom_t timestamp;
        xcb_atom_t multiple;
        xcb_atom_t saveTargets;
        xcb_atom_t atomPair;
        xcb_atom_t null;
    };

    void release();
    [[nodiscard]] bool isOwnerForServer() const;
    [[nodiscard]] bool isBeforeOwnership(xcb_timestamp_t time) const;
    void handleRequest(const xcb_selection_request_event_t& request);
    void handleClear(const xcb_selection_clear_event_t& event);
    bool answer(const xcb_selection_request_event_t& request, xcb_atom_t property);
    bool answerOne(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool answerMultiple(xcb_window_t requestor, xcb_atom_t property);
    [[nodiscard]] std::optional<SelectionValue> valueOf(xcb_atom_t target);
    [[nodiscard]] std::vector<std::uint32_t> offeredTargets() const;

    Connection& connection_;
    SelectionTransfers& transfers_;
    xcb_window_t window_;
    xcb_atom_t selection_;
    Targets atoms_;
    State state_ = State::notOwned;
    xcb_timestamp_t ownedSince_ = XCB_CURRENT_TIME;
    std::unique_ptr<SelectionContents> contents_;
};

}  // namespace platform::x11
