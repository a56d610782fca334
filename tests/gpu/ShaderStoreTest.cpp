#include "gpu/ShaderStore.h"

#include <gtest/gtest.h>

TEST(ShaderStore, ScrambleRoundTripsTextsLongerThanTheKey)
{
    const juce::String body = "uniform sampler2D inputImageTexture; // a text well past ten characters\n"
                              "void main() { gl_FragColor = vec4(1.0); }";
    const auto scrambled = ShaderStore::scrambleText(body, ShaderStore::shaderKey);
    EXPECT_NE(scrambled, body);
    EXPECT_EQ(ShaderStore::unscrambleText(scrambled, ShaderStore::shaderKey), body);
    EXPECT_EQ(ShaderStore::unscrambledEntry(scrambled), body);
    // The wrong key gives other text (which then fails to compile, as it should).
    EXPECT_NE(ShaderStore::unscrambleText(scrambled, "0123456789"), body);
    // A program that was never embedded is empty text, which then fails to compile.
    EXPECT_TRUE(ShaderStore::text("no_such_program.frag").isEmpty());
}

TEST(ShaderStore, KeyIndexWrapsAtTheKeyLength)
{
    // Twenty zero bytes XOR the key give the key twice: the index wraps at 10, not at the text.
    const juce::MemoryBlock zeros(20, true);
    const auto text = ShaderStore::unscrambleText(ShaderStore::base64Encode(zeros), "kt3xw77qoz");
    EXPECT_EQ(text, "kt3xw77qozkt3xw77qoz");
    // The plain alphabet decodes as usual.
    const auto decoded = ShaderStore::base64Decode("QUJD+/8=");
    ASSERT_EQ(decoded.getSize(), 5u);
    EXPECT_EQ(static_cast<const uint8_t*>(decoded.getData())[3], 0xfb);
}
