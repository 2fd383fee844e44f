#include "launcharguments.h"

namespace ZVUIFramework {

std::vector<std::u16string> FeedbackArguments(const FeedbackFields& fields, bool crashed)
{
    return {
        crashed ? fields.receiveEmailOnCrash : fields.fbReceiveEmailAccount,
        fields.applicationFilePath,
        fields.userEmailInfo,
        fields.sendEmailAccount,
        fields.sendEmailPwd,
        crashed ? u"0" : u"1",
    };
}

std::vector<std::u16string> UpdaterArguments(const std::vector<std::u16string>& hostArguments, bool silent,
                                             const std::u16string& updateServer)
{
    std::vector<std::u16string> arguments = hostArguments;
    if (silent)
        arguments.emplace_back(u"--silent=true");
    if (!updateServer.empty())
        arguments.push_back(u"--updateURL=" + updateServer);
    return arguments;
}

} // namespace ZVUIFramework
