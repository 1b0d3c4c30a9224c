#include "platform/local_time.hpp"

namespace fnrk::platform {

std::tm LocalTime(std::time_t moment) {
    std::tm local{};
    localtime_r(&moment, &local);
    return local;
}

}  // namespace fnrk::platform
