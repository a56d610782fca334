#pragma once
// The easing curves of the interface's animations. Each takes the elapsed time t, the start value
// b, the change c and the duration d, and returns the value at t; the kind numbers are what the
// panels pass to EaseComponentAnimator. Two curves keep well-known quirks on purpose (see the
// notes at quadraticInOut and circularInOut): the look of the panels was tuned with them.

namespace Easing
{
enum Kind : int
{
    sineIn = 0, sineOut, sineInOut,
    quadraticIn, quadraticOut, quadraticInOut,
    circularIn, circularOut, circularInOut,
    backIn, backOut, backInOut,
    elasticIn, elasticOut, elasticInOut,
    bounceIn, bounceOut, bounceInOut,
    numKinds
};

float sineInF(float t, float b, float c, float d);
float sineOutF(float t, float b, float c, float d);
float sineInOutF(float t, float b, float c, float d);
float quadraticInF(float t, float b, float c, float d);
float quadraticOutF(float t, float b, float c, float d);
/** The second half starts at b + c / 2, rises a little and comes back to b + c / 2. */
float quadraticInOutF(float t, float b, float c, float d);
float circularInF(float t, float b, float c, float d);
float circularOutF(float t, float b, float c, float d);
/** Jumps at the midpoint (the second half uses (w - 2) w), and still ends at b + c. */
float circularInOutF(float t, float b, float c, float d);
float backInF(float t, float b, float c, float d);
float backOutF(float t, float b, float c, float d);
float backInOutF(float t, float b, float c, float d);
float elasticInF(float t, float b, float c, float d);
float elasticOutF(float t, float b, float c, float d);
float elasticInOutF(float t, float b, float c, float d);
float bounceInF(float t, float b, float c, float d);
float bounceOutF(float t, float b, float c, float d);
float bounceInOutF(float t, float b, float c, float d);

/** The curve of a kind; kinds outside 0 to 17 ease like sine out. */
float ease(int kind, float t, float b, float c, float d);
} // namespace Easing
