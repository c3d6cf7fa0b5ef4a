#include "contracts/pasteboard_contract.h"

#include "doubles/fake_pasteboard.h"
#include "platform/x11/pasteboard_fixture.h"

namespace {

class FakeWorld final : public contracts::PasteboardWorld {
  public:
    capture::Pasteboard& pasteboard() override { return pasteboard_; }
    std::optional<std::string> pastedImage() override {
        const auto* png = pasteboard_.image ? pasteboard_.image->pngRepresentation() : nullptr;
        return png != nullptr ? std::optional(std::string(png->begin(), png->end())) : std::nullopt;
    }
    std::optional<std::string> pastedText() override { return pasteboard_.text; }

  private:
    doubles::FakePasteboard pasteboard_;
};

class X11World final : public contracts::PasteboardWorld {
  public:
    capture::Pasteboard& pasteboard() override { return *desk_.pasteboard; }
    std::optional<std::string> pastedImage() override { return pasted("image/png"); }
    std::optional<std::string> pastedText() override { return pasted("UTF8_STRING"); }

  private:
    std::optional<std::string> pasted(const std::string& target) {
        const auto paste = desk_.paste(program_, target);
        return paste.state == pasteboard_test::Paste::State::complete
                   ? std::optional(std::string(paste.bytes.begin(), paste.bytes.end()))
                   : std::nullopt;
    }

    pasteboard_test::PasteboardDesktop desk_;
    pasteboard_test::PastingProgram program_{pasteboard_test::sharedServer().displayName()};
};

template <typename World>
contracts::PasteboardWorldMaker makerOf(const std::string& name) {
    return {name, [] { return std::make_unique<World>(); }};
}

using contracts::PasteboardContract;
INSTANTIATE_TEST_SUITE_P(Worlds, PasteboardContract,
                         testing::Values(makerOf<FakeWorld>("fake"), makerOf<X11World>("x11")),
                         [](const auto& parameter) { return parameter.param.name; });

}  // namespace
