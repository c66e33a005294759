#pragma once

namespace caudalis::testing {

// Line a: 8, 10, 12, 14 mm at 10 .. 40 m; line b: 12 mm everywhere; plus a collector inside
// 5 m, one struck out by the crew, one invalid and two in the end-gun zone.
inline constexpr const char* twoCrewLines =
    "line,collector,distance_m,depth_mm,flag\n"
    "a,1,4,30,\n"
    "a,2,10,8,\n"
    "a,3,20,10,\n"
    "a,4,30,12,\n"
    "a,5,40,14,\n"
    "a,6,50,20,\n"
    "b,1,40,12,\n"
    "b,2,30,12,\n"
    "b,3,20,12,\n"
    "b,4,10,12,\n"
    "b,5,35,2,tipped\n"
    "b,6,25,-1,\n"
    "b,7,55,10,\n";

}  // namespace caudalis::testing
