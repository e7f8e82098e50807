// What somebody answered who was asked within a time.
#pragma once

namespace halvorn {

enum class Answer {  // whether there was one
  Given,
  Missing,  // nobody is there to be asked
  Silent,   // somebody is there and did not answer in time
};

}  // namespace halvorn
