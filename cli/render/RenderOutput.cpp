#include "cli/render/RenderOutput.h"
#include "cli/render/RenderJob.h"

#include <sys/stat.h>

namespace RenderOutput
{
namespace
{
ImageFileType typeOfFormat(const juce::String& format)
{
    return ImageFileTypes::fromPath("x." + format);
}
} // namespace

bool isSameFile(const juce::File& a, const juce::File& b)
{
    if (a == b)
        return true;
    struct stat sa {}, sb {};
    return ::stat(a.getFullPathName().toRawUTF8(), &sa) == 0 && ::stat(b.getFullPathName().toRawUTF8(), &sb) == 0
           && sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

juce::String problemBeforeRender(const RenderOptions& options, const juce::Array<juce::File>& inputs)
{
    if (options.output.isEmpty())
        return {};
    const auto target = juce::File::getCurrentWorkingDirectory().getChildFile(options.output);
    const bool namesFolder = options.output.endsWithChar('/');
    if (namesFolder && !target.isDirectory())
        return "-o " + options.output + ": no such folder";
    if (inputs.size() > 1 || target.isDirectory())
    {
        if (target.existsAsFile())
            return "-o " + options.output + ": a file, but " + juce::String(inputs.size()) + " inputs need a folder";
        return {};
    }

    if (!target.getParentDirectory().isDirectory())
        return "-o " + options.output + ": the folder " + target.getParentDirectory().getFullPathName() + " does not exist";
    const auto extension = target.getFileExtension();
    const auto type = ImageFileTypes::fromPath(target.getFullPathName());
    if (extension.isNotEmpty() && type == ImageFileType::unknown)
        return "-o " + options.output + ": unknown picture type \"" + extension + "\" (use .jpg, .png or .tif)";
    if (options.format.isNotEmpty() && extension.isNotEmpty() && type != typeOfFormat(options.format))
        return "-o " + options.output + " is not a " + options.format + " file name (--format " + options.format + ")";
    if (options.overwrite && inputs.size() == 1 && isSameFile(target, inputs.getFirst()))
        return "-o " + options.output + " is the input itself; --overwrite never replaces an input";
    return {};
}

juce::Result write(const SxImageRgbaBytes& image, const juce::File& wanted, const juce::File& input, bool overwrite,
                   const ImageWriteOptions& writeOptions, juce::File& written)
{
    const auto type = ImageFileTypes::fromPath(wanted.getFullPathName());
    if (overwrite && !isSameFile(wanted, input))
    {
        written = wanted;
        return ImageFileWriter::write(image, wanted, type, writeOptions);
    }
    // Each try starts from the first free name again: the one that was taken is no longer free.
    for (int attempt = 0; attempt < 1000; ++attempt)
    {
        const auto candidate = RenderJob::freeName(wanted, false);
        bool nameTaken = false;
        const auto result = ImageFileWriter::writeNew(image, candidate, type, writeOptions, nameTaken);
        if (!nameTaken)
        {
            written = candidate;
            return result;
        }
    }
    return juce::Result::fail("cannot write: no free name beside " + wanted.getFullPathName());
}
} // namespace RenderOutput
