#include "contracts/pasteboard_contract.h"

namespace contracts {

TEST_P(PasteboardContract, a_picture_is_pasted_as_its_png) {
    pasteboard.clearContents();
    pasteboard.writeImage(makeImage(4, 2));

    EXPECT_EQ(world->pastedImage(), "PNG 4x2 4.0x2.0");
    EXPECT_EQ(world->pastedText(), std::nullopt);
}

TEST_P(PasteboardContract, a_picture_is_encoded_when_it_is_pasted_and_only_once) {
    pasteboard.clearContents();
    pasteboard.writeImage(makeImage(4, 2));
    EXPECT_EQ(encoder.encodeCount, 0);

    EXPECT_TRUE(world->pastedImage());
    EXPECT_TRUE(world->pastedImage());

    EXPECT_EQ(encoder.encodeCount, 1);
}

TEST_P(PasteboardContract, the_png_that_the_file_has_made_is_the_one_that_is_pasted) {
    const auto image = makeImage(4, 2);
    ASSERT_NE(image->pngRepresentation(), nullptr);

    pasteboard.clearContents();
    pasteboard.writeImage(image);

    EXPECT_EQ(world->pastedImage(), "PNG 4x2 4.0x2.0");
    EXPECT_EQ(encoder.encodeCount, 1);
}

TEST_P(PasteboardContract, a_text_is_pasted_letter_for_letter) {
    pasteboard.clearContents();
    pasteboard.writeString("Größe 5 €\n日本");

    EXPECT_EQ(world->pastedText(), "Größe 5 €\n日本");
    EXPECT_EQ(world->pastedImage(), std::nullopt);
}

TEST_P(PasteboardContract, cleared_it_has_nothing_to_paste) {
    pasteboard.writeImage(makeImage(4, 2));
    pasteboard.clearContents();

    EXPECT_EQ(world->pastedImage(), std::nullopt);
    EXPECT_EQ(world->pastedText(), std::nullopt);
}

TEST_P(PasteboardContract, a_text_takes_the_place_of_a_picture) {
    pasteboard.writeImage(makeImage(4, 2));
    pasteboard.writeString("text");

    EXPECT_EQ(world->pastedImage(), std::nullopt);
    EXPECT_EQ(world->pastedText(), "text");
}

TEST_P(PasteboardContract, a_picture_takes_the_place_of_a_text) {
    pasteboard.writeString("text");
    pasteboard.writeImage(makeImage(4, 2));

    EXPECT_EQ(world->pastedImage(), "PNG 4x2 4.0x2.0");
    EXPECT_EQ(world->pastedText(), std::nullopt);
}

TEST_P(PasteboardContract, a_picture_that_cannot_be_encoded_is_not_pasted) {
    encoder.error = base::Error{base::ErrorKind::failed, "The encoder is broken."};
    pasteboard.writeImage(makeImage(4, 2));

    EXPECT_EQ(world->pastedImage(), std::nullopt);
}

TEST_P(PasteboardContract, a_picture_that_is_no_longer_offered_is_let_go) {
    auto image = makeImage(4, 2);
    const std::weak_ptr<capture::CapturedImage> watched = image;
    pasteboard.writeImage(std::move(image));
    EXPECT_FALSE(watched.expired());

    pasteboard.clearContents();

    EXPECT_TRUE(watched.expired());
}

}  // namespace contracts
