#pragma once

#include <limits>
#include <string>
#include <vector>

#include "core/RunTimeError.h"
#include "core/ports/LongWork.h"

namespace vantor {

/// Carries work out at once, over the files of the test. The user stops it when it has asked `AsksBeforeStop` times.
class FakeLongWork : public LongWork {
public:
    explicit FakeLongWork(FileSystem& files) : files_(files) {}
    int AsksBeforeStop = std::numeric_limits<int>::max();
    std::vector<std::string> Texts;

    bool Run(const std::string& text, const Action& work) override {
        Texts.push_back(text);
        bool isStopped = false;
        work(files_, Progress([&](double) {
                 isStopped = isStopped || AsksBeforeStop-- <= 0;
                 return !isStopped;
             }));
        return !isStopped;
    }
    void Begin(Action work) override {
        try {
            work(files_, Progress());
            wentWell_ = true;
        } catch (const RunTimeError&) {
            wentWell_ = false;
        }
    }
    bool IsBusy() const override { return false; }
    bool Finish() override { return wentWell_; }
    std::unique_ptr<LongWork> Another() const override { return std::make_unique<FakeLongWork>(files_); }

private:
    FileSystem& files_;
    bool wentWell_ = true;
};

}  // namespace vantor
