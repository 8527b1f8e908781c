#include "plots/ProfileDrag.h"

namespace vantor {

bool ProfileDrag::Release() {
    if (dragLine_ == ProfileLine::None) return false;
    if (dragLine_ != ProfileLine::IdealSpeed && releaseCount_ < 2) ++releaseCount_;
    dragLine_ = ProfileLine::None;
    if (releaseCount_ == 2) releaseCount_ = Ready;
    return IsReady();
}

}  // namespace vantor
