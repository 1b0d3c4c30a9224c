// A second workstation for the concurrent news-label test: the user of NAME chooses the labels
// PREFIX1 .. PREFIX<COUNT> one after the other in the installation of FNRK_MAIN_PATH, trying a
// choice again while the other workstation holds the row.
//
//   fnrk_news_label_chooser NAME PREFIX COUNT

#include <chrono>
#include <iostream>
#include <memory>
#include <string>
#include <thread>

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "tables/ads_class.hpp"
#include "users/users_news.hpp"

int main(int argc, char** argv) {
    using namespace fnrk;
    if (argc != 4) {
        std::cerr << "usage: fnrk_news_label_chooser NAME PREFIX COUNT\n";
        return 64;
    }
    engine::Engine engine;
    tables::SqlDatabase db(engine, [] { return std::make_unique<backend::FRCDatabase>(); });
    tables::AdsClass ads(db);
    ads.SetInteractive(false);
    if (ads.Initialize() != engine::AE_SUCCESS) return 1;
    users::UsersNews news(ads);
    const int count = std::stoi(argv[3]);
    for (int label = 1; label <= count; ++label) {
        int attempts = 0;
        while (!news.SelectLabel(argv[1], argv[2] + std::to_string(label), true)) {
            if (++attempts == 2000) {
                std::cerr << "label " << label << " refused: " << ads.GetAdsLastError() << "\n";
                return 2;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    return 0;
}
