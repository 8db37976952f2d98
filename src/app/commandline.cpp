#include "app/commandline.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype kFirstArgument = 1; // the one before it is the program

qsizetype indexOf(const QStringList &arguments, QLatin1StringView option)
{
    for (qsizetype i = kFirstArgument; i < arguments.size(); ++i) {
        if (arguments[i].compare(option, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

/// The argument right after the first occurrence of `option`, whatever it looks like.
QString valueOf(const QStringList &arguments, QLatin1StringView option)
{
    const qsizetype index = indexOf(arguments, option);
    return index < 0 ? QString() : arguments.value(index + 1);
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    CommandLine result;
    result.setupExecutable = valueOf(arguments, "--setup-exe"_L1);
    result.uninstaller = valueOf(arguments, "--uninstaller"_L1);
    result.handedOverBy = valueOf(arguments, "--remove-with"_L1);

    struct ModeOption
    {
        QLatin1StringView option;
        RunMode mode;
    };
    for (const ModeOption &candidate : { ModeOption { "--uninstall"_L1, RunMode::Uninstall },
                                         ModeOption { "--update"_L1, RunMode::Update },
                                         ModeOption { "--install"_L1, RunMode::Install } }) {
        if (indexOf(arguments, candidate.option) >= 0) {
            result.runMode = candidate.mode;
            break;
        }
    }
    return result;
}
