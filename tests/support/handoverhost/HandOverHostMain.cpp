// A host photo editor of our own, as small as one can be: it writes a picture (and a selection)
// into the hand-over files in $HOME, starts the program the way a plug-in does and waits for it,
// then reads the result back and checks it. Its name begins with "tornvale-plugin", which is how
// the program knows it was started by a host.
//
//   tornvale-plugin-testhost PROGRAM MODE MASK [options]
//     MODE 1, 3, 10 or 11; MASK 0 (whole picture) or 1 (left third unselected, a soft edge)
//     --set KEY=VALUE   a scripted run with this setting (repeatable): the program gets no window
//     --headless        start the program with no display (a run with the default settings)
//     --no-files        write nothing; the program must end with the missing-file status
//     --quit            expect the program to end without applying
//     --reference FILE  (mode 3, no mask) the result must equal this picture, rendered elsewhere
//     --write-png FILE  also write the host's picture as a PNG (for the reference render)
// Exit status 0 when every check passed; the reason of a failure is printed.

#include "document/HandOverFiles.h"
#include "imaging/ImageFileReader.h"
#include "imaging/ImageFileWriter.h"

#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
constexpr int width = 120, height = 80;

int failWith(const juce::String& why)
{
    std::fprintf(stderr, "testhost: FAIL: %s\n", why.toRawUTF8());
    return 1;
}

// Rings and a gradient: lines for the effect to find, so that selected pixels visibly change.
int sampleAt(int x, int y, int channel)
{
    const double dx = x - width * 0.55, dy = y - height * 0.5;
    const double ring = 0.5 + 0.5 * std::sin(std::sqrt(dx * dx + dy * dy) * 0.6 + channel);
    return juce::jlimit(0, 255, (int) (ring * 200.0 + x * 0.4));
}

HandOverFiles::Image makePicture(int mode, bool withMask)
{
    HandOverFiles::Image image;
    auto& h = image.header;
    h.title = "/home/user/Pictures/rings.tif";
    h.parameterBlock.append("testhost", 8);
    h.imageMode = mode;
    const int planes = mode == HandOverFiles::rgb8 || mode == HandOverFiles::rgb16 ? 3 : 1;
    const int bytes = mode >= HandOverFiles::grey16 ? 2 : 1;
    h.hiPlane = planes - 1;
    h.left = 10, h.top = 20, h.right = 10 + width, h.bottom = 20 + height;
    h.rowBytes = width * planes * bytes + 4;
    h.hostRect[2] = 400, h.hostRect[3] = 300;
    image.pixels.setSize((size_t) (h.rowBytes * height), true);
    auto* p = static_cast<uint8_t*>(image.pixels.getData());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int c = 0; c < planes; ++c)
            {
                const int v = sampleAt(x, y, c);
                auto* s = p + y * h.rowBytes + (x * planes + c) * bytes;
                if (bytes == 1)
                    s[0] = (uint8_t) v;
                else
                {
                    const int v16 = v * 32768 / 255 + (x % 7); // low bits a byte picture cannot hold
                    s[0] = (uint8_t) (v16 & 0xff), s[1] = (uint8_t) (v16 >> 8);
                }
            }
    if (withMask)
    {
        h.maskRowBytes = width;
        image.mask.setSize((size_t) (width * height));
        auto* m = static_cast<uint8_t*>(image.mask.getData());
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                m[y * width + x] = (uint8_t) juce::jlimit(0, 255, (x - width / 3) * 64);
    }
    return image;
}

int runProgram(const char* program, bool headless)
{
    const pid_t child = ::fork();
    if (child == 0)
    {
        if (headless)
            ::unsetenv("DISPLAY");
        ::execl(program, program, (char*) nullptr);
        std::perror("exec");
        ::_exit(127);
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child)
        return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

juce::MemoryBlock settingsXml(const juce::StringArray& settings)
{
    HandOverFiles::ActionSettings action;
    action.effectName = "Tornvale";
    for (const auto& pair : settings)
        action.dictionary.setString(pair.upToFirstOccurrenceOf("=", false, false), pair.fromFirstOccurrenceOf("=", false, false));
    juce::MemoryOutputStream out;
    HandOverFiles::writeActionSettings(out, action);
    return out.getMemoryBlock();
}
} // namespace

int main(int argc, char** argv)
{
    if (argc < 4)
    {
        std::fprintf(stderr, "usage: tornvale-plugin-testhost PROGRAM MODE MASK [--set K=V]... [--headless] [--no-files] [--quit] "
                             "[--reference FILE] [--write-png FILE]\n");
        return 2;
    }
    juce::ScopedJuceInitialiser_GUI juce;
    const char* program = argv[1];
    const int mode = std::atoi(argv[2]);
    const bool withMask = std::atoi(argv[3]) != 0;
    juce::StringArray settings;
    bool headless = false, noFiles = false, expectQuit = false;
    juce::File reference, png;
    for (int i = 4; i < argc; ++i)
    {
        const juce::String arg(argv[i]);
        if (arg == "--set" && i + 1 < argc)
            settings.add(argv[++i]);
        else if (arg == "--headless")
            headless = true;
        else if (arg == "--no-files")
            noFiles = true;
        else if (arg == "--quit")
            expectQuit = true;
        else if (arg == "--reference" && i + 1 < argc)
            reference = juce::File(argv[++i]);
        else if (arg == "--write-png" && i + 1 < argc)
            png = juce::File(argv[++i]);
        else
            return failWith("unknown argument " + arg);
    }

    const auto paths = HandOverFiles::pathsIn(juce::File::getSpecialLocation(juce::File::userHomeDirectory));
    for (const auto& file : { paths.flag, paths.image, paths.data, paths.action })
        file.deleteFile();
    if (noFiles)
    {
        const int status = runProgram(program, headless);
        std::printf("testhost: no files: status %d\n", status);
        return status == 174 ? 0 : failWith("the program ended with " + juce::String(status) + ", not 174");
    }

    const auto sent = makePicture(mode, withMask);
    juce::MemoryOutputStream bytes;
    HandOverFiles::writeImage(bytes, sent);
    if (!paths.image.replaceWithData(bytes.getData(), bytes.getDataSize()) || !paths.flag.replaceWithText("")
        || !paths.data.replaceWithData(sent.header.parameterBlock.getData(), sent.header.parameterBlock.getSize()))
        return failWith("cannot write the hand-over files");
    if (!settings.isEmpty())
    {
        const auto xml = settingsXml(settings);
        paths.action.replaceWithData(xml.getData(), xml.getSize());
    }
    if (png != juce::File())
    {
        ImageWriteOptions options;
        if (!ImageFileWriter::write(*sent.toPicture(), png, ImageFileType::png, options).wasOk())
            return failWith("cannot write " + png.getFullPathName());
    }

    const int status = runProgram(program, headless);
    if (status != 0)
        return failWith("the program ended with status " + juce::String(status));
    if (expectQuit)
    {
        if (HandOverFiles::resultWasApplied(paths))
            return failWith("a result was applied although the program was told to quit");
        std::printf("testhost: quit without applying\n");
        return 0;
    }
    if (!HandOverFiles::resultWasApplied(paths))
        return failWith("the program ended without applying a result");

    HandOverFiles::Image back;
    juce::String error;
    if (!HandOverFiles::readImageFile(paths.image, back, error))
        return failWith("the result cannot be read: " + error);
    const auto& h = back.header;
    if (h.imageMode != mode || h.width() != width || h.height() != height || h.rowBytes != sent.header.rowBytes
        || back.pixels.getSize() != sent.pixels.getSize())
        return failWith("the result has another size or layout");

    // Unselected samples must come back exactly as sent; selected ones must have changed.
    const int stride = sent.header.samplesPerPixel() * sent.header.bytesPerSample();
    int changedSelected = 0, selected = 0, changedUnselected = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
        {
            const int coverage = withMask ? static_cast<const uint8_t*>(sent.mask.getData())[y * width + x] : 255;
            const auto offset = (size_t) (y * h.rowBytes + x * stride);
            const bool same = std::memcmp(static_cast<const uint8_t*>(sent.pixels.getData()) + offset,
                                          static_cast<const uint8_t*>(back.pixels.getData()) + offset, (size_t) stride)
                              == 0;
            if (coverage == 0)
                changedUnselected += same ? 0 : 1;
            if (coverage == 255)
            {
                ++selected;
                changedSelected += same ? 0 : 1;
            }
        }
    std::printf("testhost: mode %d mask %d: %d of %d selected pixels changed, %d unselected changed\n", mode, withMask ? 1 : 0,
                changedSelected, selected, changedUnselected);
    if (changedUnselected != 0)
        return failWith("unselected pixels changed");
    if (changedSelected < selected / 2)
        return failWith("the effect left most selected pixels as they were");

    if (reference != juce::File())
    {
        // The same picture and settings through the command-line renderer: one render path.
        auto expected = ImageFileReader::read(reference);
        if (!expected.ok())
            return failWith("cannot read the reference " + reference.getFullPathName());
        auto got = back.toPicture();
        int differing = 0;
        for (size_t i = 0; i < got->byteCount(); ++i)
            if (i % 4 != 0 && got->pixels[i] != expected.image->pixels[i])
                ++differing;
        std::printf("testhost: %d samples differ from the reference render\n", differing);
        if (expected.image->width != width || expected.image->height != height || differing != 0)
            return failWith("the result differs from the command-line render");
    }
    return 0;
}
