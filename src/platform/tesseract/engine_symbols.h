#pragma once

namespace platform::tesseract::symbols {

// The linker's names of what is called or replaced in the engine.

inline constexpr const char* tangentTable = "_ZN9tesseract9TanhTableE";
inline constexpr const char* logisticTable = "_ZN9tesseract13LogisticTableE";

inline constexpr const char* resizeToMap =
    "_ZN9tesseract9NetworkIO11ResizeToMapEbRKNS_9StrideMapEi";
inline constexpr const char* resizeXTo1 = "_ZN9tesseract9NetworkIO10ResizeXTo1ERKS0_i";
inline constexpr const char* resizeScaled = "_ZN9tesseract9NetworkIO12ResizeScaledERKS0_iii";
inline constexpr const char* randomize = "_ZN9tesseract9NetworkIO9RandomizeEiiiPNS_5TRandE";
inline constexpr const char* matrixDotVector =
    "_ZNK9tesseract12WeightMatrix15MatrixDotVectorEPKaPf";

inline constexpr const char* writeTimeStepPart =
    "_ZN9tesseract9NetworkIO17WriteTimeStepPartEiiiPKf";
inline constexpr const char* forwardConnected =
    "_ZN9tesseract14FullyConnected7ForwardEbRKNS_9NetworkIOEPKNS_15TransposedArrayEPNS_"
    "14NetworkScratchEPS1_";
inline constexpr const char* forwardConvolve =
    "_ZN9tesseract8Convolve7ForwardEbRKNS_9NetworkIOEPKNS_15TransposedArrayEPNS_"
    "14NetworkScratchEPS1_";
inline constexpr const char* forwardMaxpool =
    "_ZN9tesseract7Maxpool7ForwardEbRKNS_9NetworkIOEPKNS_15TransposedArrayEPNS_"
    "14NetworkScratchEPS1_";
inline constexpr const char* forwardMemory =
    "_ZN9tesseract4LSTM7ForwardEbRKNS_9NetworkIOEPKNS_15TransposedArrayEPNS_"
    "14NetworkScratchEPS1_";

inline constexpr const char* loadUniversal =
    "_ZN9tesseract13UnicharAmbigs13LoadUniversalERKNS_10UNICHARSETEPS1_";
inline constexpr const char* extractEdges = "_ZN9tesseract13extract_edgesENS_5ImageEPNS_5BLOCKE";

inline constexpr const char* called[] = {resizeToMap, resizeXTo1, resizeScaled, randomize,
                                         matrixDotVector};
inline constexpr const char* replaced[] = {writeTimeStepPart, forwardConnected, forwardConvolve,
                                           forwardMaxpool,    forwardMemory,    loadUniversal,
                                           extractEdges};

}  // namespace platform::tesseract::symbols
