// Helpers shared by the timing tests.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// A file in the temporary directory named after the running test, so that
// tests run in parallel processes never share one; removed at the end.
class TempDatei {
public:
    explicit TempDatei(const std::string& endung) {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        std::string name = "kelvaran_";
        if (info != nullptr) name += std::string(info->test_suite_name()) + "_" + info->name();
        for (char& c : name)
            if (c == '/' || c == '\\') c = '_';
        pfad = (std::filesystem::temp_directory_path() / (name + endung)).string();
        std::error_code fehler;
        std::filesystem::remove(pfad, fehler);
    }
    ~TempDatei() {
        std::error_code fehler;
        std::filesystem::remove(pfad, fehler);
    }
    TempDatei(const TempDatei&) = delete;
    TempDatei& operator=(const TempDatei&) = delete;

    const std::string& name() const { return pfad; }

    void schreiben(const std::string& inhalt) const {
        std::ofstream aus(pfad, std::ios::binary);
        aus << inhalt;
    }
    std::string lesen() const {
        std::ifstream ein(pfad, std::ios::binary);
        std::ostringstream s;
        s << ein.rdbuf();
        return s.str();
    }

private:
    std::string pfad;
};
