// Tag names and value meanings of the makers' notes, after the tag lists the
// makers and the community have published. One text per table, one line per
// tag: the tag in hexadecimal, its name, then after "|" the meanings of its
// values as "value=meaning" separated by ";".
#include <QHash>
#include <QStringList>

#include "metadata/CMakerNote.h"

namespace tg::meta {

namespace {

const char* const kOlympus = R"(
0100 ThumbnailImage
0104 BodyFirmwareVersion
0200 SpecialMode
0201 Quality|1=SQ;2=HQ;3=SHQ;4=Raw
0202 Macro|0=Off;1=On;2=Super Macro
0203 BWMode|0=Off;1=On
0204 DigitalZoom
0205 FocalPlaneDiagonal
0206 LensDistortionParams
0207 CameraType
0208 TextInfo
0209 CameraID
020B EpsonImageWidth
020C EpsonImageHeight
020D EpsonSoftware
0280 PreviewImage
0300 PreCaptureFrames
0301 WhiteBoard
0302 OneTouchWB|0=Off;1=On;2=On (Preset)
0303 WhiteBalanceBracket
0304 WhiteBalanceBias
0403 SceneMode
0404 SerialNumber
0405 Firmware
0E00 PrintIM
0F00 DataDump
0F01 DataDump2
1000 ShutterSpeedValue
1001 ISOValue
1002 ApertureValue
1003 BrightnessValue
1004 FlashMode|2=On;3=Off
1005 FlashDevice|0=None;1=Internal;4=External;5=Internal + External
1006 ExposureCompensation
1007 SensorTemperature
1008 LensTemperature
100B FocusMode|0=Auto;1=Manual
100C ManualFocusDistance
100D ZoomStepCount
100E FocusStepCount
100F Sharpness|0=Normal;1=Hard;2=Soft
1010 FlashChargeLevel
1011 ColorMatrix
1012 BlackLevel
1015 WBMode
1017 RedBalance
1018 BlueBalance
101A SerialNumber
1023 FlashExposureComp
1026 ExternalFlashBounce|0=No;1=Yes
1027 ExternalFlashZoom
1028 ExternalFlashMode
1029 Contrast|0=High;1=Normal;2=Low
102A SharpnessFactor
102B ColorControl
102C ValidBits
102D CoringFilter
102E OlympusImageWidth
102F OlympusImageHeight
1034 CompressionRatio
1035 PreviewImageValid|0=No;1=Yes
1036 PreviewImageStart
1037 PreviewImageLength
1039 CCDScanMode|0=Interlaced;1=Progressive
103A NoiseReduction|0=Off;1=On
103B InfinityLensStep
103C NearLensStep
2010 Equipment
2020 CameraSettings
2030 RawDevelopment
2040 ImageProcessing
2050 FocusInfo
)";

const char* const kNikon = R"(
0001 MakerNoteVersion
0002 ISO
0003 ColorMode
0004 Quality
0005 WhiteBalance
0006 Sharpness
0007 FocusMode
0008 FlashSetting
0009 FlashType
000B WhiteBalanceFineTune
000C WB_RBLevels
000D ProgramShift
000E ExposureDifference
000F ISOSelection
0010 DataDump
0011 PreviewIFD
0012 FlashExposureComp
0013 ISOSetting
0016 ImageBoundary
0017 ExternalFlashExposureComp
0018 FlashExposureBracketValue
0019 ExposureBracketValue
001A ImageProcessing
001B CropHiSpeed
001C ExposureTuning
001D SerialNumber
001E ColorSpace|1=sRGB;2=Adobe RGB
001F VRInfo
0020 ImageAuthentication|0=Off;1=On
0022 ActiveD-Lighting|0=Off;1=Low;3=Normal;5=High;7=Extra High;65535=Auto
0023 PictureControlData
0024 WorldTime
0025 ISOInfo
002A VignetteControl|0=Off;1=Low;3=Normal;5=High
0080 ImageAdjustment
0081 ToneComp
0082 AuxiliaryLens
0083 LensType
0084 Lens
0085 ManualFocusDistance
0086 DigitalZoom
0087 FlashMode|0=Did Not Fire;1=Fired, Manual;3=Not Ready;7=Fired, External;8=Fired, Commander Mode;9=Fired, TTL Mode
0088 AFInfo
0089 ShootingMode
008B LensFStops
008C ContrastCurve
008D ColorHue
008F SceneMode
0090 LightSource
0091 ShotInfo
0092 HueAdjustment
0093 NEFCompression|1=Lossy (type 1);2=Uncompressed;3=Lossless;4=Lossy (type 2)
0094 Saturation
0095 NoiseReduction
0096 NEFLinearizationTable
0097 ColorBalance
0098 LensData
0099 RawImageCenter
009A SensorPixelSize
009C SceneAssist
009E RetouchHistory
00A0 SerialNumber
00A2 ImageDataSize
00A5 ImageCount
00A6 DeletedImageCount
00A7 ShutterCount
00A8 FlashInfo
00A9 ImageOptimization
00AA Saturation
00AB VariProgram
00AC ImageStabilization
00AD AFResponse
00B0 MultiExposure
00B1 HighISONoiseReduction|0=Off;1=Minimal;2=Low;4=Normal;6=High
00B3 ToningEffect
00B7 AFInfo2
00B8 FileInfo
00B9 AFTune
0E00 PrintIM
0E01 NikonCaptureData
0E09 NikonCaptureVersion
0E0E NikonCaptureOffsets
0E10 NikonScan
0E1D NikonICCProfile
0E1E NikonCaptureOutput
)";

// Nikon notes of version 1 ("Nikon", 0, 1): the early Coolpix cameras.
const char* const kNikon1 = R"(
0002 FamilyID
0003 Quality|1=VGA Basic;2=VGA Normal;3=VGA Fine;4=SXGA Basic;5=SXGA Normal;6=SXGA Fine
0004 ColorMode|1=Color;2=Monochrome
0005 ImageAdjustment|0=Normal;1=Bright+;2=Bright-;3=Contrast+;4=Contrast-
0006 CCDSensitivity|0=ISO80;2=ISO160;4=ISO320;5=ISO100
0007 WhiteBalance|0=Auto;1=Preset;2=Daylight;3=Incandescent;4=Fluorescent;5=Cloudy;6=Speedlight
0008 Focus
000A DigitalZoom
000B FisheyeConverter|0=None;1=On
0F00 DataDump
)";

const char* const kCasio = R"(
0001 RecordingMode|1=Single Shutter;2=Panorama;3=Night Scene;4=Portrait;5=Landscape
0002 Quality|1=Economy;2=Normal;3=Fine
0003 FocusMode|2=Macro;3=Auto;4=Manual;5=Infinity;7=Spot AF
0004 FlashMode|1=Auto;2=On;3=Off;4=Red-eye Reduction
0005 FlashIntensity|11=Weak;13=Normal;15=Strong
0006 ObjectDistance
0007 WhiteBalance|1=Auto;2=Tungsten;3=Daylight;4=Fluorescent;5=Shade;129=Manual
000A DigitalZoom|65536=Off;65537=2x;131072=4x
000B Sharpness|0=Normal;1=Soft;2=Hard
000C Contrast|0=Normal;1=Low;2=High
000D Saturation|0=Normal;1=Low;2=High
0014 ISO|64=Normal;125=+1.0;250=+2.0;244=+3.0
0015 FirmwareDate
0016 Enhancement|1=Off;2=Red;3=Green;4=Blue;5=Flesh Tones
0017 ColorFilter|1=Off;2=Black & White;3=Sepia;4=Red;5=Green;6=Blue;7=Yellow;8=Pink;9=Purple
0018 AFPoint|1=Center;2=Upper Left;3=Upper Right;4=Near Left/Right of Center;5=Far Left/Right of Center
0019 FlashIntensity|1=Normal;2=Weak;3=Strong
0E00 PrintIM
)";

// Casio notes of version 2 ("QVC").
const char* const kCasio2 = R"(
0002 PreviewImageSize
0003 PreviewImageLength
0004 PreviewImageStart
0008 QualityMode|0=Economy;1=Normal;2=Fine
0009 CasioImageSize
000D FocusMode|0=Normal;1=Macro
0014 ISO|3=50;4=64;6=100;9=200
0019 WhiteBalance|0=Auto;1=Daylight;2=Shade;3=Tungsten;4=Fluorescent;5=Manual
001D FocalLength
001F Saturation|0=Low;1=Normal;2=High
0020 Contrast|0=Low;1=Normal;2=High
0021 Sharpness|0=Soft;1=Normal;2=Hard
0E00 PrintIM
2000 PreviewImage
2001 FirmwareDate
2011 WhiteBalanceBias
2012 WhiteBalance2|0=Manual;1=Daylight;2=Cloudy;3=Shade;4=Flash?;6=Fluorescent;9=Tungsten?;10=Tungsten;12=Flash
2021 AFPointPosition
2022 ObjectDistance
2034 FlashDistance
3000 RecordMode|2=Program AE;3=Shutter Priority;4=Aperture Priority;5=Manual;6=Best Shot;17=Movie;19=Movie (19);20=YouTube Movie
3001 ReleaseMode|1=Normal;3=AE Bracketing;11=WB Bracketing;13=Contrast Bracketing;19=High Speed Burst
3002 Quality|1=Economy;2=Normal;3=Fine
3003 FocusMode2|0=Manual;1=Focus Lock;2=Macro;3=Single-Area Auto Focus;5=Infinity;6=Multi-Area Auto Focus;8=Super Macro
3006 HometownCity
3007 BestShotMode
3008 AutoISO|1=On;2=Off;7=On (high sensitivity);8=On (anti-shake);10=High Speed
3009 AFMode|0=Off;1=Spot;2=Multi;3=Face Detection;4=Tracking;5=Intelligent
3011 Sharpness
3012 Contrast
3013 Saturation
3014 CCDISOSensitivity
3015 ColorMode|0=Off;2=Black & White;3=Sepia
3016 Enhancement|0=Off;1=Scenery;3=Green;5=Underwater;9=Flesh Tones
3017 ColorFilter|0=Off;1=Blue;3=Green;4=Yellow;5=Red;6=Purple;7=Pink
301C SequenceNumber
301D BracketSequence
3020 ImageStabilization
)";

const char* const kFuji = R"(
0000 Version
0010 InternalSerialNumber
1000 Quality
1001 Sharpness|0=-4 (softest);1=-3 (very soft);2=-2 (soft);3=0 (normal);4=+2 (hard);5=+3 (very hard);6=+4 (hardest);130=-1 (medium soft);132=+1 (medium hard)
1002 WhiteBalance|0=Auto;256=Daylight;512=Cloudy;768=Daylight Fluorescent;769=Day White Fluorescent;770=White Fluorescent;771=Warm White Fluorescent;772=Living Room Warm White Fluorescent;1024=Incandescent;1280=Flash;1536=Underwater;3840=Custom;3841=Custom2;3842=Custom3;4080=Kelvin
1003 Saturation|0=0 (normal);128=+1 (medium high);256=+2 (high);384=-1 (medium low);512=Low;768=None (B&W);769=B&W Red Filter;770=B&W Yellow Filter;771=B&W Green Filter
1004 Contrast|0=Normal;128=Medium High;256=High;384=Medium Low;512=Low;32768=Film Simulation
1005 ColorTemperature
1006 Contrast|0=Normal;256=High;768=Low
100A WhiteBalanceFineTune
100B NoiseReduction|64=Low;128=Normal;256=n/a
100E HighISONoiseReduction|0=0 (normal);256=+2 (strong);384=+1 (medium strong);448=+3 (very strong);480=+4 (strongest);512=-2 (weak);640=-1 (medium weak);704=-3 (very weak);736=-4 (weakest)
1010 FujiFlashMode|0=Auto;1=On;2=Off;3=Red-eye reduction;4=External;16=Commander;32768=Not Attached;33056=TTL;38976=Manual;39040=Multi-flash
1011 FlashExposureComp
1020 Macro|0=Off;1=On
1021 FocusMode|0=Auto;1=Manual
1022 AFMode|0=No;1=Single Point;256=Zone;512=Wide/Tracking
1023 FocusPixel
1030 SlowSync|0=Off;1=On
1031 PictureMode|0=Auto;1=Portrait;2=Landscape;3=Macro;4=Sports;5=Night Scene;6=Program AE;7=Natural Light;8=Anti-blur;9=Beach & Snow;10=Sunset;11=Museum;12=Party;13=Flower;14=Text;15=Natural Light & Flash;16=Beach;17=Snow;18=Fireworks;19=Underwater;256=Aperture-priority AE;512=Shutter speed priority AE;768=Manual
1032 ExposureCount
1033 EXRAuto|0=Auto;1=Manual
1034 EXRMode|256=HR (High Resolution);512=SN (Signal to Noise priority);768=DR (Dynamic Range priority)
1100 AutoBracketing|0=Off;1=On;2=No flash & flash
1101 SequenceNumber
1210 ColorMode
1300 BlurWarning|0=None;1=Blur Warning
1301 FocusWarning|0=Good;1=Out of focus
1302 ExposureWarning|0=Good;1=Bad exposure
1304 GEImageSize
1400 DynamicRange|1=Standard;3=Wide
1401 FilmMode|0=F0/Standard (Provia);256=F1/Studio Portrait;272=F1a/Studio Portrait Enhanced Saturation;288=F1b/Studio Portrait Smooth Skin Tone (Astia);304=F1c/Studio Portrait Increased Sharpness;512=F2/Fujichrome (Velvia);768=F3/Studio Portrait Ex;1024=F4/Velvia;1280=Pro Neg. Std;1281=Pro Neg. Hi;1536=Classic Chrome
1402 DynamicRangeSetting|0=Auto;1=Manual;256=Standard (100%);512=Wide1 (230%);513=Wide2 (400%);32768=Film Simulation
1403 DevelopmentDynamicRange
1404 MinFocalLength
1405 MaxFocalLength
1406 MaxApertureAtMinFocal
1407 MaxApertureAtMaxFocal
140B AutoDynamicRange
4100 FacesDetected
8000 FileSource
8002 OrderNumber
8003 FrameNumber
)";

const char* const kCanon = R"(
0001 CanonCameraSettings
0002 CanonFocalLength
0003 CanonFlashInfo
0004 CanonShotInfo
0005 CanonPanorama
0006 CanonImageType
0007 CanonFirmwareVersion
0008 FileNumber
0009 OwnerName
000A UnknownD30
000C SerialNumber
000D CanonCameraInfo
000E CanonFileLength
000F CustomFunctions
0010 CanonModelID
0011 MovieInfo
0012 CanonAFInfo
0013 ThumbnailImageValidArea
0015 SerialNumberFormat|2415919104=Format 1;2684354560=Format 2
001A SuperMacro|0=Off;1=On (1);2=On (2)
001C DateStampMode|0=Off;1=Date;2=Date & Time
001D MyColors
001E FirmwareRevision
0023 Categories
0024 FaceDetect1
0025 FaceDetect2
0026 CanonAFInfo2
0027 ContrastInfo
0028 ImageUniqueID
002F FaceDetect3
0035 TimeInfo
0081 RawDataOffset
0083 OriginalDecisionDataOffset
0090 CustomFunctions1D
0091 PersonalFunctions
0092 PersonalFunctionValues
0093 CanonFileInfo
0094 AFPointsInFocus1D
0095 LensModel
0096 SerialInfo
0097 DustRemovalData
0098 CropInfo
0099 CustomFunctions2
009A AspectInfo
00A0 ProcessingInfo
00A1 ToneCurveTable
00A2 SharpnessTable
00A3 SharpnessFreqTable
00A4 WhiteBalanceTable
00A9 ColorBalance
00AA MeasuredColor
00AE ColorTemperature
00B0 CanonFlags
00B1 ModifiedInfo
00B2 ToneCurveMatching
00B3 WhiteBalanceMatching
00B4 ColorSpace|1=sRGB;2=Adobe RGB
00B6 PreviewImageInfo
00D0 VRDOffset
00E0 SensorInfo
4001 ColorData
4002 CRWParam
4003 ColorInfo
4005 Flavor
4008 PictureStyleUserDef
4009 PictureStylePC
4010 CustomPictureStyleFileName
4013 AFMicroAdj
4015 VignettingCorr
4016 VignettingCorr2
4018 LightingOpt
4019 LensInfo
4020 AmbienceInfo
4021 MultiExp
4024 FilterInfo
4025 HDRInfo
4028 AFConfig
)";

const char* const kSigma = R"(
0002 SerialNumber
0003 DriveMode
0004 ResolutionMode
0005 AFMode
0006 FocusSetting
0007 WhiteBalance
0008 ExposureMode|A=Aperture-priority AE;M=Manual;P=Program AE;S=Shutter speed priority AE
0009 MeteringMode|A=Average;C=Center-weighted average;8=Multi-segment
000A LensFocalRange
000B ColorSpace
000C ExposureCompensation
000D Contrast
000E Shadow
000F Highlight
0010 Saturation
0011 Sharpness
0012 X3FillLight
0014 ColorAdjustment
0015 AdjustmentMode
0016 Quality
0017 Firmware
0018 Software
0019 AutoBracket
)";

const char* const kSanyo = R"(
0100 SanyoThumbnail
0200 SpecialMode
0201 SanyoQuality
0202 Macro|0=Normal;1=Macro;2=View;3=Manual
0204 DigitalZoom
0207 SoftwareVersion
0208 PictInfo
0209 CameraID
020E SequentialShot|0=None;1=Standard;2=Best;3=Adjust Exposure
020F WideRange|0=Off;1=On
0210 ColorAdjustmentMode|0=Off;1=On
0213 QuickShot|0=Off;1=On
0214 SelfTimer|0=Off;1=On
0216 VoiceMemo|0=Off;1=On
0217 RecordShutterRelease|0=Record while down;1=Press start, press stop
0218 FlickerReduce|0=Off;1=On
0219 OpticalZoomOn|0=Off;1=On
021B DigitalZoomOn|0=Off;1=On
021D LightSourceSpecial|0=Off;1=On
021E Resaved|0=No;1=Yes
021F SceneSelect|0=Off;1=Sport;2=TV;3=Night;4=User 1;5=User 2;6=Lamp
0223 ManualFocusDistance
0224 SequenceShotInterval|0=5 frames/s;1=10 frames/s;2=15 frames/s;3=20 frames/s
0225 FlashMode|0=Auto;1=Force;2=Disabled;3=Red eye
0E00 PrintIM
0F00 DataDump
)";

const char* const kMinolta = R"(
0000 MakerNoteVersion
0001 MinoltaCameraSettingsOld
0003 MinoltaCameraSettings
0004 MinoltaCameraSettings7D
0018 ImageStabilization
0020 WBInfoA100
0040 CompressedImageSize
0081 PreviewImageData
0088 PreviewImageStart
0089 PreviewImageLength
0100 SceneMode|0=Standard;1=Portrait;2=Text;3=Night Scene;4=Sunset;5=Sports;6=Landscape;7=Night Portrait;8=Macro;9=Super Macro
0101 ColorMode|0=Natural color;1=Black & White;2=Vivid color;3=Solarization;4=Adobe RGB;5=Sepia;9=Natural;12=Portrait;13=Natural sRGB;14=Natural+ sRGB;15=Landscape;16=Evening;17=Night Scene;18=Night Portrait;132=Embed Adobe RGB
0102 Quality|0=Raw;1=Super Fine;2=Fine;3=Normal;4=Economy;5=Extra Fine;6=Raw + JPEG;7=Compressed Raw;8=Compressed Raw + JPEG
0103 MinoltaImageSize|1=1600x1200;2=1280x960;3=640x480;5=2560x1920;6=2272x1704;7=2048x1536
0104 FlashExposureComp
0105 Teleconverter|0=None;72=Minolta/Sony AF 1.4x APO;80=Minolta/Sony AF 2x APO
0107 ImageStabilization|1=Off;5=On
0109 RawAndJpgRecording|0=Off;1=On
010A ZoneMatching|0=ISO Setting Used;1=High Key;2=Low Key
010B ColorTemperature
010C LensType
0111 ColorCompensationFilter
0112 WhiteBalanceFineTune
0113 ImageStabilization|0=Off;1=On
0114 MinoltaCameraSettings5D
0115 WhiteBalance
0E00 PrintIM
0F00 MinoltaCameraSettings2
)";

const char* const kSony = R"(
0102 Quality|0=Raw;1=Super Fine;2=Fine;3=Standard;4=Economy;5=Extra Fine;6=Raw + JPEG;7=Compressed Raw;8=Compressed Raw + JPEG
0104 FlashExposureComp
0105 Teleconverter|0=None;72=Minolta/Sony AF 1.4x APO;80=Minolta/Sony AF 2x APO
0112 WhiteBalanceFineTune
0114 CameraSettings
0115 WhiteBalance|0=Auto;1=Color Temperature/Color Filter;16=Daylight;32=Cloudy;48=Shade;64=Tungsten;80=Flash;96=Fluorescent;112=Custom
0E00 PrintIM
1000 MultiBurstMode|0=Off;1=On
1001 MultiBurstImageWidth
1002 MultiBurstImageHeight
1003 Panorama
2001 PreviewImage
2002 Rating
2004 Contrast
2005 Saturation
2006 Sharpness
2007 Brightness
2008 LongExposureNoiseReduction|0=Off;1=On;65535=n/a
2009 HighISONoiseReduction|0=Off;1=Low;2=Normal;3=High;256=Auto;65535=n/a
200A HDR
200B MultiFrameNoiseReduction|0=Off;1=On;255=n/a
B000 FileFormat
B001 SonyModelID
B020 ColorReproduction
B021 ColorTemperature
B022 ColorCompensationFilter
B023 SceneMode|0=Standard;1=Portrait;2=Text;3=Night Scene;4=Sunset;5=Sports;6=Landscape;7=Night Portrait;8=Macro;9=Super Macro;16=Auto;17=Night View/Portrait
B024 ZoneMatching|0=ISO Setting Used;1=High Key;2=Low Key
B025 DynamicRangeOptimizer|0=Off;1=Standard;2=Advanced Auto;3=Auto;8=Advanced Lv1;9=Advanced Lv2;10=Advanced Lv3;11=Advanced Lv4;12=Advanced Lv5
B026 ImageStabilization|0=Off;1=On
B027 LensType
B028 MinoltaMakerNote
B029 ColorMode
B02B FullImageSize
B02C PreviewImageSize
B040 Macro|0=Off;1=On;2=Close Focus;65535=n/a
B041 ExposureMode|0=Program AE;1=Portrait;2=Beach;3=Sports;4=Snow;5=Landscape;6=Auto;7=Aperture-priority AE;8=Shutter speed priority AE;9=Night Scene / Twilight;10=Hi-Speed Shutter;11=Twilight Portrait;12=Soft Snap/Portrait;13=Fireworks;14=Smile Shutter;15=Manual
B042 FocusMode|1=AF-S;2=AF-C;4=Permanent-AF;65535=n/a
B043 AFMode|0=Default;1=Multi;2=Center;3=Spot;4=Flexible Spot;6=Touch;14=Tracking;15=Face Tracking;65535=n/a
B044 AFIlluminator|0=Off;1=Auto;65535=n/a
B047 JPEGQuality|0=Normal;1=Fine;2=Extra Fine;65535=n/a
B048 FlashLevel
B049 ReleaseMode|0=Normal;2=Continuous;5=Exposure Bracketing;6=White Balance Bracketing;65535=n/a
B04A SequenceNumber|0=Single;65535=n/a
B04B Anti-Blur|0=Off;1=On (Continuous);2=On (Shooting);65535=n/a
B04E LongExposureNoiseReduction|0=Off;1=On;65535=n/a
B04F DynamicRangeOptimizer|0=Off;1=Standard;2=Plus
B052 IntelligentAuto|0=Off;1=On;2=Advanced
B054 WhiteBalance|0=Auto;4=Manual;5=Daylight;6=Cloudy;7=Cool White Fluorescent;8=Day White Fluorescent;9=Daylight Fluorescent;10=Incandescent2;11=Warm White Fluorescent;14=Incandescent;15=Flash;17=Underwater 1 (Blue Water);18=Underwater 2 (Green Water)
)";

const char* const kKyocera = R"(
0001 ThumbnailImage
0E00 PrintIM
)";

const char* const kPanasonic = R"(
0001 ImageQuality|1=TIFF;2=High;3=Normal;6=Very High;7=Raw;9=Motion Picture
0002 FirmwareVersion
0003 WhiteBalance|1=Auto;2=Daylight;3=Cloudy;4=Incandescent;5=Manual;8=Flash;10=Black & White;11=Manual;12=Shade;13=Kelvin
0007 FocusMode|1=Auto;2=Manual;4=Auto, Focus button;5=Auto, Continuous;6=AF-S;7=AF-C;8=AF-F
000F AFAreaMode
001A ImageStabilization|2=On, Mode 1;3=Off;4=On, Mode 2;5=Panning;6=On, Mode 3
001C MacroMode|1=On;2=Off;257=Tele-Macro;513=Macro Zoom
001F ShootingMode|1=Normal;2=Portrait;3=Scenery;4=Sports;5=Night Portrait;6=Program;7=Aperture Priority;8=Shutter Priority;9=Macro;10=Spot;11=Manual;12=Movie Preview;13=Panning;14=Simple;15=Color Effects;16=Self Portrait;17=Economy;18=Fireworks;19=Party;20=Snow;21=Night Scenery;22=Food;23=Baby;24=Soft Skin;25=Candlelight;26=Starry Night;27=High Sensitivity;28=Panorama Assist;29=Underwater;30=Beach;31=Aerial Photo;32=Sunset;33=Pet;34=Intelligent ISO
0020 Audio|1=Yes;2=No
0021 DataDump
0023 WhiteBalanceBias
0024 FlashBias
0025 InternalSerialNumber
0026 PanasonicExifVersion
0028 ColorEffect|1=Off;2=Warm;3=Cool;4=Black & White;5=Sepia;6=Happy
0029 TimeSincePowerOn
002A BurstMode|0=Off;1=On;2=Auto Exposure Bracketing (AEB);4=Unlimited
002B SequenceNumber
002C ContrastMode
002D NoiseReduction|0=Standard;1=Low (-1);2=High (+1);3=Lowest (-2);4=Highest (+2)
002E SelfTimer|1=Off;2=10 s;3=2 s;4=10 s / 3 pictures
0030 Rotation|1=Horizontal (normal);3=Rotate 180;6=Rotate 90 CW;8=Rotate 270 CW
0031 AFAssistLamp|1=Fired;2=Enabled but Not Used;3=Disabled but Required;4=Disabled and Not Required
0032 ColorMode|0=Normal;1=Natural;2=Vivid
0033 BabyAge
0034 OpticalZoomMode|1=Standard;2=Extended
0035 ConversionLens|1=Off;2=Wide;3=Telephoto;4=Macro
0036 TravelDay
0039 Contrast
003A WorldTimeLocation|1=Home;2=Destination
003B TextStamp|1=Off;2=On
003C ProgramISO
003D AdvancedSceneType
0042 FilmMode|0=n/a;1=Standard (color);2=Dynamic (color);3=Nature (color);4=Smooth (color);5=Standard (B&W);6=Dynamic (B&W);7=Smooth (B&W)
0044 ColorTempKelvin
0045 BracketSettings
0046 WBShiftAB
0047 WBShiftGM
0051 LensType
0052 LensSerialNumber
0053 AccessoryType
0E00 PrintIM
8000 MakerNoteVersion
8001 SceneMode
8004 WBRedLevel
8005 WBGreenLevel
8006 WBBlueLevel
8010 BabyAge
8012 Transform
)";

// Pentax notes of version 1 (no "AOC" header): the early Optio cameras.
const char* const kPentax = R"(
0001 CaptureMode|0=Auto;1=Night Scene;2=Manual;4=Multiple
0002 QualityLevel|0=Good;1=Better;2=Best
0003 FocusMode|2=Custom;3=Auto
0004 FlashMode|1=Auto;2=On;4=Off;6=Red-eye reduction
0007 WhiteBalance|0=Auto;1=Daylight;2=Shade;3=Tungsten;4=Fluorescent;5=Manual
000A DigitalZoom
000B Sharpness|0=Normal;1=Soft;2=Hard
000C Contrast|0=Normal;1=Low;2=High
000D Saturation|0=Normal;1=Low;2=High
0014 ISOSpeed|10=100;16=200;100=100;200=200
0017 Color|1=Normal;2=Black & White;3=Sepia
0E00 PrintIM
1000 TimeZone
1001 DaylightSavings
)";

// Pentax notes of version 2 ("AOC").
const char* const kPentax2 = R"(
0000 PentaxVersion
0001 PentaxModelType
0002 PreviewImageSize
0003 PreviewImageLength
0004 PreviewImageStart
0005 PentaxModelID
0006 Date
0007 Time
0008 Quality|0=Good;1=Better;2=Best;3=TIFF;4=Raw;5=Premium;7=Raw (pixel shift enabled);8=Dynamic Pixel Shift;65535=n/a
0009 PentaxImageSize
000B PictureMode
000C FlashMode
000D FocusMode|0=Normal;1=Macro;2=Infinity;3=Manual;4=Super Macro;5=Pan Focus;16=AF-S (Focus-priority);17=AF-C (Focus-priority);18=AF-A (Focus-priority);32=Contrast-detect (Focus-priority);33=Tracking Contrast-detect (Focus-priority);272=AF-S (Release-priority);273=AF-C (Release-priority);274=AF-A (Release-priority);288=Contrast-detect (Release-priority)
000E AFPointSelected
000F AFPointsInFocus
0010 FocusPosition
0012 ExposureTime
0013 FNumber
0014 ISO
0015 LightReading
0016 ExposureCompensation
0017 MeteringMode|0=Multi-segment;1=Center-weighted average;2=Spot
0018 AutoBracketing
0019 WhiteBalance|0=Auto;1=Daylight;2=Shade;3=Fluorescent;4=Tungsten;5=Manual;6=Daylight Fluorescent;7=Day White Fluorescent;8=White Fluorescent;9=Flash;10=Cloudy;11=Warm White Fluorescent;14=Multi Auto;15=Color Temperature Enhancement;17=Kelvin;65534=Unknown;65535=User-Selected
001A WhiteBalanceMode|1=Auto (Daylight);2=Auto (Shade);3=Auto (Flash);4=Auto (Tungsten);6=Auto (Daylight Fluorescent);7=Auto (Day White Fluorescent);8=Auto (White Fluorescent);10=Auto (Cloudy);65534=Unknown;65535=User-Selected
001B BlueBalance
001C RedBalance
001D FocalLength
001E DigitalZoom
001F Saturation|0=-1 (low);1=0 (normal);2=+1 (high);3=-2 (very low);4=+2 (very high);5=-3;6=+3;65535=None
0020 Contrast|0=-1 (low);1=0 (normal);2=+1 (high);3=-2 (very low);4=+2 (very high);5=-3;6=+3;65535=None
0021 Sharpness|0=-1 (soft);1=0 (normal);2=+1 (hard);3=-2 (very soft);4=+2 (very hard);5=-3;6=+3
0022 WorldTimeLocation|0=Hometown;1=Destination
0023 HometownCity
0024 DestinationCity
0025 HometownDST|0=No;1=Yes
0026 DestinationDST|0=No;1=Yes
0027 DSPFirmwareVersion
0028 CPUFirmwareVersion
0029 FrameNumber
002D EffectiveLV
0032 ImageEditing
0033 PictureMode
0034 DriveMode
0035 SensorSize
0037 ColorSpace|0=sRGB;1=Adobe RGB
0038 ImageAreaOffset
0039 RawImageSize
003C AFPointsInFocus
003E PreviewImageBorders
003F LensType
0040 SensitivityAdjust
0041 ImageEditCount
0047 CameraTemperature
0048 AELock|0=Off;1=On
0049 NoiseReduction|0=Off;1=On
004D FlashExposureComp
004F ImageTone|0=Natural;1=Bright;2=Portrait;3=Landscape;4=Vibrant;5=Monochrome;6=Muted;7=Reversal Film;8=Bleach Bypass;9=Radiant
0050 ColorTemperature
005C ShakeReductionInfo
005D ShutterCount
0069 DynamicRangeExpansion
0071 HighISONoiseReduction
0072 AFAdjustment
0200 BlackPoint
0201 WhitePoint
0203 ColorMatrixA
0204 ColorMatrixB
0205 CameraSettings
0206 AEInfo
0207 LensInfo
0208 FlashInfo
0209 AEMeteringSegments
020A FlashMeteringSegments
020B SlaveFlashMeteringSegments
020D WB_RGGBLevelsDaylight
0215 CameraInfo
0216 BatteryInfo
021F AFInfo
0222 ColorInfo
0229 SerialNumber
03FE DataDump
0E00 PrintIM
)";

const char* const kRicoh = R"(
0001 MakerNoteType
0002 FirmwareVersion
0005 SerialNumber
0E00 PrintIM
1000 RecordingFormat|2=JPEG;3=TIFF
1001 ImageInfo
1002 DriveMode|0=Single-frame;1=Continuous;8=AF-priority Continuous
1003 Sharpness|0=Sharp;1=Normal;2=Soft
1004 WhiteBalanceFineTune
1006 FocusMode|1=Manual;2=Multi AF;3=Spot AF;4=Snap;5=Infinity;7=Face Detect;8=Subject Tracking;9=Pinpoint AF
1007 AutoBracketing|0=Off;9=AE;11=WB;16=DR;17=Contrast;18=WB2;19=Effect
1009 MacroMode|0=Off;1=On
100A FlashMode|0=Off;1=Auto;2=On;3=Auto, Red-eye reduction;4=On, Red-eye reduction;5=Slow Sync
100B FlashExposureComp
100C ManualFlashOutput
2001 RicohSubdir
4001 ThetaSubdir
)";

const char* const kAgfa = R"(
0E00 PrintIM
)";

struct Ligne {
  QString nom;
  QHash<qint64, QString> sens;
};

using Table = QHash<int, Ligne>;

Table Lire(const char* texte) {
  Table t;
  for (const QString& ligne : QString::fromUtf8(texte).split(u'\n', Qt::SkipEmptyParts)) {
    const int barre = ligne.indexOf(u'|');
    const QString tete = barre < 0 ? ligne : ligne.left(barre);
    bool ok = false;
    const int tag = tete.left(4).toInt(&ok, 16);
    if (!ok) continue;
    Ligne l;
    l.nom = tete.mid(5).trimmed();
    if (barre >= 0)
      for (const QString& paire : ligne.mid(barre + 1).split(u';')) {
        const int egal = paire.indexOf(u'=');
        bool nombre = false;
        const qint64 v = paire.left(egal).toLongLong(&nombre);
        // Sigma's letter codes are ASCII values: no number to look up.
        if (egal > 0 && nombre) l.sens.insert(v, paire.mid(egal + 1));
      }
    t.insert(tag, l);
  }
  return t;
}

const Table* TableDe(int table) {
  static const Table tables[] = {
      Lire(kOlympus),   Lire(kNikon),   Lire(kCasio), Lire(kFuji),   Lire(kCanon),   Lire(kSigma),
      Lire(kSanyo),     Lire(kMinolta), Lire(kSony),  Lire(kAgfa),   Lire(kOlympus), Lire(kKyocera),
      Lire(kPanasonic), Lire(kPentax),  Lire(kRicoh), Lire(kNikon1), Lire(kCasio2),  Lire(kPentax2),
  };
  return table >= 0 && table < int(std::size(tables)) ? &tables[table] : nullptr;
}

}  // namespace

QString NomTagFabricant(int table, int32_t tag) {
  const Table* t = TableDe(table);
  if (t == nullptr) return {};
  const auto it = t->find(tag);
  return it == t->end() ? QString() : it->nom;
}

QString SignificationFabricant(int table, int32_t tag, int64_t valeur) {
  const Table* t = TableDe(table);
  if (t == nullptr) return {};
  const auto it = t->find(tag);
  return it == t->end() ? QString() : it->sens.value(valeur);
}

}  // namespace tg::meta
