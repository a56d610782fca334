#include "cli/render/RenderOptions.h"
#include "effect/EffectParameters.h"

namespace RenderCommandLine
{
const juce::StringArray& parameterKeys()
{
    static const juce::StringArray keys = [] {
        juce::StringArray names;
        for (const auto* row : EffectParameterTable::inSaveOrder())
            names.add(row->key);
        return names;
    }();
    return keys;
}

namespace
{
bool isNumber(const juce::String& text)
{
    return text.isNotEmpty() && text.containsOnly("0123456789.-+eE") && text.containsAnyOf("0123456789");
}
} // namespace

std::optional<RenderOptions> parse(const juce::StringArray& arguments, juce::String& error)
{
    RenderOptions options;
    for (int i = 0; i < arguments.size(); ++i)
    {
        const auto& argument = arguments[i];
        auto value = [&](const char* name) -> std::optional<juce::String> {
            if (i + 1 >= arguments.size())
            {
                error = juce::String(name) + " needs a value";
                return std::nullopt;
            }
            return arguments[++i];
        };

        if (argument == "-h" || argument == "--help")
            options.help = true;
        else if (argument == "--list-presets")
            options.listPresets = true;
        else if (argument == "--overwrite")
            options.overwrite = true;
        else if (argument == "-o" || argument == "--output")
        {
            auto v = value("-o");
            if (!v) return std::nullopt;
            options.output = *v;
        }
        else if (argument == "--format")
        {
            auto v = value("--format");
            if (!v) return std::nullopt;
            const auto f = v->toLowerCase();
            if (f == "jpg" || f == "jpeg")
                options.format = "jpg";
            else if (f == "png")
                options.format = "png";
            else if (f == "tif" || f == "tiff")
                options.format = "tif";
            else
            {
                error = "unknown format \"" + *v + "\" (use jpg, png or tif)";
                return std::nullopt;
            }
        }
        else if (argument == "--preset")
        {
            auto v = value("--preset");
            if (!v) return std::nullopt;
            options.preset = *v;
        }
        else if (argument == "--mask")
        {
            auto v = value("--mask");
            if (!v) return std::nullopt;
            options.mask = *v;
        }
        else if (argument == "--set")
        {
            auto v = value("--set");
            if (!v) return std::nullopt;
            const auto key = v->upToFirstOccurrenceOf("=", false, false).trim();
            const auto number = v->fromFirstOccurrenceOf("=", false, false).trim();
            if (!v->contains("=") || !parameterKeys().contains(key))
            {
                error = "--set takes KEY=VALUE with KEY one of: " + parameterKeys().joinIntoString(", ");
                return std::nullopt;
            }
            if (!isNumber(number))
            {
                error = "--set " + key + " needs a number, not \"" + number + "\"";
                return std::nullopt;
            }
            options.settings.emplace_back(key, number);
        }
        else if (argument == "--seed")
        {
            auto v = value("--seed");
            if (!v) return std::nullopt;
            if (!v->containsOnly("0123456789") || v->isEmpty())
            {
                error = "--seed needs a whole number";
                return std::nullopt;
            }
            options.randomSettings = v->getLargeIntValue();
        }
        else if (argument == "--max-megapixels")
        {
            auto v = value("--max-megapixels");
            if (!v) return std::nullopt;
            if (!isNumber(*v) || v->getDoubleValue() <= 0.0)
            {
                error = "--max-megapixels needs a positive number";
                return std::nullopt;
            }
            options.maxMegapixels = v->getDoubleValue();
        }
        else if (argument == "--size")
        {
            auto v = value("--size");
            if (!v) return std::nullopt;
            if (*v != "full" && *v != "preview")
            {
                error = "--size is full or preview";
                return std::nullopt;
            }
            options.previewSize = *v == "preview";
        }
        else if (argument.startsWith("-") && argument.length() > 1)
        {
            error = "unknown option " + argument;
            return std::nullopt;
        }
        else
            options.inputs.add(argument);
    }

    if (!options.help && !options.listPresets && options.inputs.isEmpty())
    {
        error = "no input given";
        return std::nullopt;
    }
    return options;
}

namespace
{
/** One line per parameter: its key, range, default and the control it stands for. */
juce::String parameterLines()
{
    juce::String lines;
    for (const auto* row : EffectParameterTable::inSaveOrder())
    {
        juce::String range = row->isInteger() ? "0.." + juce::String((int) row->maximum) : juce::String("0..1");
        if (row->isInteger())
        {
            juce::StringArray named;
            for (size_t i = 0; i < row->choices.size(); ++i)
                named.add(juce::String((int) i) + " " + row->choices[i]);
            range += " (" + named.joinIntoString(", ") + ")";
        }
        const juce::String defaultText = row->isInteger() ? juce::String((int) row->defaultValue) : juce::String(row->defaultValue);
        lines << "                         " << juce::String(row->key).paddedRight(' ', 15) << juce::String(row->label).paddedRight(' ', 16)
              << range << ", default " << defaultText << "\n";
    }
    return lines;
}
} // namespace

juce::String helpText()
{
    return "Usage: tornvale-render [options] INPUT...\n"
           "Turns photos into line art without a window. An INPUT is an image (JPEG, PNG, TIFF),\n"
           "a project file (its settings apply) or a folder of them.\n"
           "\n"
           "  -o PATH              output file for one input, else an output folder\n"
           "                       (default: beside each input, as NAME_tornvale.EXT)\n"
           "  --format jpg|png|tif output format (default: the input's)\n"
           "  --preset NAME|FILE   a built-in preset by name (e.g. \"01 Tornvale\") or a .pre file\n"
           "  --set KEY=VALUE      set one parameter after the preset; repeatable. KEYS:\n"
           + parameterLines() +
           "  --mask FILE          a grey picture of any size, scaled to each input: white shows\n"
           "                       the colour-adjusted photo, black the line art (default: all art)\n"
           "  --seed N             random settings from N, the same for the same N\n"
           "  --size full|preview  render at full size (default) or fitted into 1500 x 1500\n"
           "  --overwrite          replace existing outputs (default: number them, NAME (1).EXT)\n"
           "  --max-megapixels N   read pictures up to N megapixels (default 150)\n"
           "  --list-presets       list the presets (writing the built-ins first if none exist)\n"
           "  -h, --help           this text\n"
           "\n"
           "Progress goes to stderr, one line per file. Exit status: 0 all written, 1 some input\n"
           "failed, 2 usage error.\n";
}
} // namespace RenderCommandLine
