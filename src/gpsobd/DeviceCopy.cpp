#include "gpsobd/DeviceCopy.h"

#include "gpsobd/clsPPCFileTransfer.h"

namespace vantor {
namespace {

void TellConnectionError(MessageBoxes& messages) {
    messages.Ask(
        {"Cannot connect with PDA.\n"
         "Check that PDA is in cradle and turned on.\n"
         "Also check that Active Sync is running.\n"
         "If problem continues, contact Technical Support.\n",
         MessageButtons::Ok, MessageIcon::Warning, "Error Connecting to PDA"});
}

void TellCopyError(MessageBoxes& messages, std::int32_t result) {
    messages.Ask({" Error number " + std::to_string(result) + " detected. Contact Technical Support for help.",
                  MessageButtons::Ok, MessageIcon::Warning, "Error Copying Files"});
}

}  // namespace

bool WantsDeviceCopy(MessageBoxes& messages, const LogDevice& device) {
    const std::string question = std::string("If you wish to have Vantor copy \n") + device.Program +
                                 " database files into your \n"
                                 "selected field data folder, place \n"
                                 "your Pocket-PC device in its cradle now \n"
                                 "& click Yes. Otherwise, click No.\n";
    return messages.Ask({question, MessageButtons::YesNo, MessageIcon::Warning, "Pocket-PC Data Transfer Alert"}) ==
           MessageAnswer::Yes;
}

void CopyFromDevice(AppContext& context, const LogDevice& device, const std::string& folder,
                    const std::function<void(std::int16_t)>& delay) {
    constexpr std::int16_t WaitAfterCopy = 1000;
    clsPPCFileTransfer transfer(context.State.Handheld, context.Device, context.Files);
    if (!transfer.Initialize()) {
        TellConnectionError(context.Messages);
        return;
    }
    const std::string devicePath = std::string("\\Program Files\\") + device.Program + "\\" + device.File;
    const std::int32_t result = transfer.CopyToDesktop(devicePath, folder + device.File, true);
    if (result != Copied) {
        TellCopyError(context.Messages, result);
        return;
    }
    delay(WaitAfterCopy);
    transfer.Terminate();
}

}  // namespace vantor
