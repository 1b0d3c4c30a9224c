// A workstation taking matching numbers for the multi-process test: opens the dossier's
// parameter table through AdsClass, takes COUNT numbers of book year BOOKYEAR one after the
// other and prints each on a line. A lock held by another workstation is retried, as a user
// answering "Retry" would, after a moment.
//
//   fnrk_match_number_taker DOSSIER_PREFIX BOOKYEAR COUNT

#include <chrono>
#include <iostream>
#include <memory>
#include <string>
#include <thread>

#include "backend/frc_database.hpp"
#include "company/soc_param_col_class_api.hpp"
#include "engine/engine.hpp"
#include "platform/messages.hpp"
#include "tables/ads_class.hpp"

namespace {

class RetryingSink : public fnrk::platform::MessageSink {
  public:
    fnrk::platform::MessageAnswer Show(const std::string&, const std::string&,
                                       fnrk::platform::MessageStyle) override {
        // A user takes a moment to answer; retrying at once would only keep the others busy.
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        return fnrk::platform::MessageAnswer::Retry;
    }
};

}  // namespace

int main(int argc, char** argv) {
    using namespace fnrk;
    if (argc != 4) {
        std::cerr << "usage: fnrk_match_number_taker PREFIX BOOKYEAR COUNT\n";
        return 64;
    }
    RetryingSink retry;
    platform::SetMessageSink(&retry);
    engine::Engine engine;
    tables::SqlDatabase db(engine, [] { return std::make_unique<backend::FRCDatabase>(); });
    tables::AdsClass ads(db);
    ads.SetDossierPrefix(argv[1]);
    if (ads.Initialize() != engine::AE_SUCCESS || ads.FileOpenParam() != engine::AE_SUCCESS) {
        std::cerr << "cannot open the parameters: " << ads.GetAdsLastError() << "\n";
        return 1;
    }
    company::SocParamColClassApi params(ads);
    const int count = std::stoi(argv[3]);
    for (int taken = 0; taken < count; ++taken) {
        std::string bookYear = argv[2];
        const std::int32_t number = params.GetNewMatchNumber(bookYear);
        if (number == 0) {
            std::cerr << "no number after " << taken << ": " << ads.GetAdsLastError() << "\n";
            return 2;
        }
        std::cout << number << "\n";
    }
    return 0;
}
