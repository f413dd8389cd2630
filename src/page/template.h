// The pages without their data, made by the build from the files of page/. Each has the marks
// @TITLE@ and @DATA@, in this order.
#pragma once

extern const char pagetemplate[];
extern const char fragmenttemplate[];
