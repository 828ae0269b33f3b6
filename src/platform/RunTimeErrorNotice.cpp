#include "platform/RunTimeErrorNotice.h"

namespace qrv {

Notice noticeOf(const RunTimeError& error) {
    return {.text = "Run-time error '" + std::to_string(error.code()) + "':\n\n" + error.description(),
            .title = "QRV_Edit",
            .buttons = Buttons::Ok,
            .icon = Icon::Critical};
}

}  // namespace qrv
