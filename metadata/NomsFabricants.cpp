// Tag names and value meanings of the makers' notes, after the tag lists the
// makers and the community have published. One text per table, one line per
// tag: the tag in hexadecimal, its name, then after "|" the meanings of its
// values as "value=meaning" separated by ";".
#include <QHash>
#include <QSet>
#include <QStringList>
#include <vector>

#include "metadata/CMakerNote.h"
#include "metadata/NomsOlympus.h"

namespace tg::meta {

namespace {

const char* const kOlympus = R"(
0000 MakerNoteVersion
0001 MinoltaCameraSettingsOld
0003 MinoltaCameraSettings
0040 CompressedImageSize
0081 PreviewImageData
0088 PreviewImageStart
0089 PreviewImageLength
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
0400 SensorArea
0401 BlackLevel
0403 SceneMode|0=Normal;1=Standard;2=Auto;3=Intelligent Auto;4=Portrait;5=Landscape+Portrait;6=Landscape;7=Night Scene;8=Night+Portrait;9=Sport;10=Self Portrait;11=Indoor;12=Beach & Snow;13=Beach;14=Snow;15=Self Portrait+Self Timer;16=Sunset;17=Cuisine;18=Documents;19=Candle;20=Fireworks;21=Available Light;22=Vivid;23=Underwater Wide1;24=Underwater Macro;25=Museum;26=Behind Glass;27=Auction
0404 SerialNumber
0405 Firmware
0E00 PrintIM
0F00 DataDump
0F01 DataDump2
0F04 ZoomedPreviewStart
0F05 ZoomedPreviewLength
0F06 ZoomedPreviewSize
1000 ShutterSpeedValue
1001 ISOValue
1002 ApertureValue
1003 BrightnessValue
1004 FlashMode|2=On;3=Off
1005 FlashDevice|0=None;1=Internal;4=External;5=Internal + External
1006 ExposureCompensation
1007 SensorTemperature
1008 LensTemperature
1009 LightCondition
100A FocusRange|0=Normal;1=Macro
100B FocusMode|0=Auto;1=Manual
100C ManualFocusDistance
100D ZoomStepCount
100E FocusStepCount
100F Sharpness|0=Normal;1=Hard;2=Soft
1010 FlashChargeLevel
1011 ColorMatrix
1012 BlackLevel
1013 ColorTemperatureBG
1014 ColorTemperatureRG
1015 WBMode
1017 RedBalance
1018 BlueBalance
1019 ColorMatrixNumber
101A SerialNumber
101B ExternalFlashAE1_0
101C ExternalFlashAE2_0
101D InternalFlashAE1_0
101E InternalFlashAE2_0
101F ExternalFlashAE1
1020 ExternalFlashAE2
1021 InternalFlashAE1
1022 InternalFlashAE2
1023 FlashExposureComp
1024 InternalFlashTable
1025 ExternalFlashGValue
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
1030 SceneDetect
1031 SceneArea
1033 SceneDetectData
1034 CompressionRatio
1035 PreviewImageValid|0=No;1=Yes
1036 PreviewImageStart
1037 PreviewImageLength
1038 AFResult
1039 CCDScanMode|0=Interlaced;1=Progressive
103A NoiseReduction|0=Off;1=On
103B FocusStepInfinity
103C FocusStepNear
103D LightValueCenter
103E LightValuePeriphery
103F FieldCount
2010 Equipment
2020 CameraSettings
2030 RawDevelopment
2031 RawDevelopment2
2040 ImageProcessing
2050 FocusInfo
2100 Olympus2100
2200 Olympus2200
2300 Olympus2300
2400 Olympus2400
2500 Olympus2500
2600 Olympus2600
2700 Olympus2700
2800 Olympus2800
2900 Olympus2900
3000 RawInfo
4000 MainInfo
5000 UnknownInfo
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
0021 FaceDetect
0022 ActiveD-Lighting|0=Off;1=Low;3=Normal;5=High;7=Extra High;65535=Auto
0023 PictureControlData
0024 WorldTime
0025 ISOInfo
002A VignetteControl|0=Off;1=Low;3=Normal;5=High
002B DistortInfo
002C UnknownInfo
0032 UnknownInfo2
0034 ShutterMode|0=Mechanical;16=Electronic;48=Electronic Front Curtain;64=Electronic (Movie);80=Auto (Mechanical);81=Auto (Electronic Front Curtain);96=Electronic (High Speed)
0035 HDRInfo
0037 MechanicalShutterCount
0039 LocationInfo
003D BlackLevel
003E ImageSizeRAW|1=Large;2=Medium;3=Small
003F WhiteBalanceFineTune
0045 CropArea
004E NikonSettings
004F ColorTemperatureAuto
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
0094 SaturationAdj
0095 NoiseReduction
0096 NEFLinearizationTable
0097 ColorBalance
0098 LensData
0099 RawImageCenter
009A SensorPixelSize
009C SceneAssist
009D DateStampMode|0=Off;1=Date & Time;2=Date;3=Date Counter
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
00B6 PowerUpTime
00B7 AFInfo2
00B8 FileInfo
00B9 AFTune
00BB RetouchInfo
00BD PictureControlData
00BF SilentPhotography|0=Off;1=On
00C3 BarometerInfo
0E00 PrintIM
0E01 NikonCaptureData
0E09 NikonCaptureVersion
0E0E NikonCaptureOffsets
0E10 NikonScan
0E13 NikonCaptureEditVersions
0E1D NikonICCProfile
0E1E NikonCaptureOutput
0E22 NEFBitDepth
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
000B Converter|0=None;1=On
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
000A DigitalZoom|65536=Off;65537=2x;131072=2x;262144=4x
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
0009 CasioImageSize|0=640x480;4=1600x1200;5=2048x1536;20=2288x1712;21=2592x1944;22=2304x1728;36=3008x2008
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
2012 WhiteBalance|0=Manual;1=Daylight;2=Cloudy;3=Shade;4=Flash?;6=Fluorescent;9=Tungsten?;10=Tungsten;12=Flash
2021 AFPointPosition
2022 ObjectDistance
2034 FlashDistance
2076 SpecialEffectMode
2089 FaceInfo
211C FacesDetected
3000 RecordMode|2=Program AE;3=Shutter Priority;4=Aperture Priority;5=Manual;6=Best Shot;17=Movie;19=Movie (19);20=YouTube Movie
3001 ReleaseMode|1=Normal;3=AE Bracketing;11=WB Bracketing;13=Contrast Bracketing;19=High Speed Burst
3002 Quality|1=Economy;2=Normal;3=Fine
3003 FocusMode|0=Manual;1=Focus Lock;2=Macro;3=Single-Area Auto Focus;5=Infinity;6=Multi-Area Auto Focus;8=Super Macro
3006 HometownCity
3007 BestShotMode
3008 AutoISO|1=On;2=Off;7=On (high sensitivity);8=On (anti-shake);10=High Speed
3009 AFMode|0=Off;1=Spot;2=Multi;3=Face Detection;4=Tracking;5=Intelligent
3011 Sharpness
3012 Contrast
3013 Saturation
3014 ISO
3015 ColorMode|0=Off;2=Black & White;3=Sepia
3016 Enhancement|0=Off;1=Scenery;3=Green;5=Underwater;9=Flesh Tones
3017 ColorFilter|0=Off;1=Blue;3=Green;4=Yellow;5=Red;6=Purple;7=Pink
301B ArtMode|0=Normal;8=Silent Movie;39=HDR;45=Premium Auto;47=Painting;49=Crayon Drawing;51=Panorama;52=Art HDR;62=High Speed Night Shot;64=Monochrome;67=Toy Camera;68=Pop Art;69=Light Tone
301C SequenceNumber
301D BracketSequence
3020 ImageStabilization|0=Off;1=On;2=Best Shot;3=Movie Anti-Shake
302A LightingMode|0=Off;1=High Dynamic Range;5=Shadow Enhance Low;6=Shadow Enhance High
302B PortraitRefiner|0=Off;1=+1;2=+2
3030 SpecialEffectLevel
3031 SpecialEffectSetting
3103 DriveMode|0=Single Shot;1=Continuous Shooting;2=Continuous (2 fps);3=Continuous (3 fps);4=Continuous (4 fps);5=Continuous (5 fps);6=Continuous (6 fps);7=Continuous (7 fps);10=Continuous (10 fps);12=Continuous (12 fps);15=Continuous (15 fps);20=Continuous (20 fps);30=Continuous (30 fps);40=Continuous (40 fps);60=Continuous (60 fps);240=Auto-N
310B ArtModeParameters
4001 CaptureFrameRate
4003 VideoQuality|1=Standard;3=HD (720p);4=Full HD (1080p);5=Low
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
100F Clarity|-5000=-5;-4000=-4;-3000=-3;-2000=-2;-1000=-1;0=0;1000=1;2000=2;3000=3;4000=4;5000=5
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
1040 ShadowTone|-64=+4 (hardest);-48=+3 (very hard);-32=+2 (hard);-16=+1 (medium hard);0=0 (normal);16=-1 (medium soft);32=-2 (soft)
1041 HighlightTone|-64=+4 (hardest);-48=+3 (very hard);-32=+2 (hard);-16=+1 (medium hard);0=0 (normal);16=-1 (medium soft);32=-2 (soft)
1044 DigitalZoom
1045 LensModulationOptimizer|0=Off;1=On
1047 GrainEffectRoughness|0=Off;32=Weak;64=Strong
1048 ColorChromeEffect|0=Off;32=Weak;64=Strong
1049 BWAdjustment
104B BWMagentaGreen
104C GrainEffectSize|0=Off;16=Small;32=Large
104D CropMode|0=n/a;1=Full-frame on GFX;2=Sports Finder Mode;4=Electronic Shutter 1.25x Crop
104E ColorChromeFXBlue|0=Off;32=Weak;64=Strong
1050 ShutterType|0=Mechanical;1=Electronic;2=Electronic (long shutter speed);3=Electronic Front Curtain
1100 AutoBracketing|0=Off;1=On;2=No flash & flash
1101 SequenceNumber
1103 DriveSettings
1105 PixelShiftShots
1106 PixelShiftOffset
1153 PanoramaAngle
1154 PanoramaDirection|1=Right;2=Up;3=Left;4=Down
1201 AdvancedFilter
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
1422 ImageStabilization
1425 SceneRecognition
1431 Rating
1436 ImageGeneration|0=Original Image;1=Re-developed from RAW
1438 ImageCount
1443 DRangePriority|0=Auto;1=Fixed
1444 DRangePriorityAuto|1=Weak;2=Strong
1445 DRangePriorityFixed|1=Weak;2=Strong
1446 FlickerReduction
1447 FujiModel
1448 FujiModel2
144D RollAngle
3803 VideoRecordingMode|0=Normal;16=F-log;32=HLG;48=F-log2
3804 PeripheralLighting|0=Off;1=On
3806 VideoCompression|1=Log GOP;2=All Intra
3820 FrameRate
3821 FrameWidth
3822 FrameHeight
3824 FullHDHighSpeedRec|1=Off;2=On
4005 FaceElementSelected
4100 FacesDetected
4103 FacePositions
4200 NumFaceElements
4201 FaceElementTypes|1=Face;2=Left Eye;3=Right Eye;7=Body;8=Head;11=Bike;12=Body of Car;13=Front of Car;14=Animal Body;15=Animal Head;16=Animal Face;17=Animal Left Eye;18=Animal Right Eye;19=Bird Body;20=Bird Head;21=Bird Left Eye;22=Bird Right Eye;23=Aircraft Body;25=Aircraft Cockpit;26=Train Front;27=Train Cockpit
4203 FaceElementPositions
4282 FaceRecInfo
8000 FileSource
8002 OrderNumber
8003 FrameNumber
B211 Parallax
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
0010 CanonModelID|2147483649=EOS-1D;2147484007=EOS-1DS;2147484008=EOS 10D;2147484016=EOS Digital Rebel / 300D / Kiss Digital;2147484020=EOS-1D Mark II;2147484021=EOS 20D;2147484041=EOS Digital Rebel XT / 350D / Kiss Digital N;2147484048=EOS 40D;2147484179=EOS 5D;2147484184=EOS 5D Mark II;2147484212=EOS 30D;2147484214=EOS Digital Rebel XTi / 400D / Kiss Digital X;2147484240=EOS 7D;2147484293=EOS 5D Mark III
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
0038 BatteryType
003C AFInfo3
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
001A PreviewImageStart
001B PreviewImageLength
001C PreviewImageSize
001D MakerNoteVersion
001E PreviewImageSize
001F AFPoint
0022 FileFormat
0024 Calibration
0026 FileFormat
0027 LensType
002A LensFocalRange
002B LensMaxApertureRange
002C ColorMode
0030 LensApertureRange
0031 FNumber
0032 ExposureTime
0033 ExposureTime2
0034 BurstShot
0035 ExposureCompensation
0039 SensorTemperature
003A FlashExposureComp
003B Firmware
003C WhiteBalance
003D PictureMode
0048 LensApertureRange
0049 FNumber
004A ExposureTime
004B ExposureTime2
004D ExposureCompensation
0055 SensorTemperature
0056 FlashExposureComp
0057 Firmware2
0058 WhiteBalance
0059 DigitalFilter
0084 Model
0086 ISO
0087 ResolutionMode
0088 WhiteBalance
008C Firmware
011F CameraCalibration
)";

const char* const kSanyo = R"(
00FF MakerNoteOffset
0100 SanyoThumbnail
0200 SpecialMode
0201 SanyoQuality|0=Normal/Very Low;1=Normal/Low;2=Normal/Medium Low;3=Normal/Medium;4=Normal/Medium High;5=Normal/High;6=Normal/Very High;7=Normal/Super High;256=Fine/Very Low;257=Fine/Low;258=Fine/Medium Low;259=Fine/Medium;260=Fine/Medium High;261=Fine/High;262=Fine/Very High;263=Fine/Super High;512=Super Fine/Very Low;513=Super Fine/Low;514=Super Fine/Medium Low;515=Super Fine/Medium;516=Super Fine/Medium High;517=Super Fine/High;518=Super Fine/Very High;519=Super Fine/Super High
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
0010 CameraInfoA100
0018 ImageStabilization
0020 WBInfoA100
0040 CompressedImageSize
0081 PreviewImage
0088 PreviewImageStart
0089 PreviewImageLength
0100 SceneMode|0=Standard;1=Portrait;2=Text;3=Night Scene;4=Sunset;5=Sports;6=Landscape;7=Night Portrait;8=Macro;9=Super Macro
0101 ColorMode|0=Natural color;1=Black & White;2=Vivid color;3=Solarization;4=Adobe RGB;5=Sepia;9=Natural;12=Portrait;13=Natural sRGB;14=Natural+ sRGB;15=Landscape;16=Evening;17=Night Scene;18=Night Portrait;132=Embed Adobe RGB
0102 MinoltaQuality|0=Raw;1=Super Fine;2=Fine;3=Standard;4=Economy;5=Extra fine
0103 MinoltaImageSize|1=1600x1200;2=1280x960;3=640x480;5=2560x1920;6=2272x1704;7=2048x1536
0104 FlashExposureComp
0105 Teleconverter|0=None;4=Minolta/Sony AF 1.4x APO (D) (0x04);5=Minolta/Sony AF 2x APO (D) (0x05);72=Minolta/Sony AF 2x APO (D);80=Minolta AF 2x APO II;96=Minolta AF 2x APO;136=Minolta/Sony AF 1.4x APO (D);144=Minolta AF 1.4x APO II;160=Minolta AF 1.4x APO
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
0010 CameraInfo
0020 FocusInfo
0102 Quality|0=RAW;1=Super Fine;2=Fine;3=Standard;4=Economy;5=Extra Fine;6=RAW + JPEG/HEIF;7=Compressed RAW;8=Compressed RAW + JPEG;9=Light;4294967295=n/a
0104 FlashExposureComp
0105 Teleconverter|0=None;4=Minolta/Sony AF 1.4x APO (D) (0x04);5=Minolta/Sony AF 2x APO (D) (0x05);72=Minolta/Sony AF 2x APO (D);80=Minolta AF 2x APO II;96=Minolta AF 2x APO;136=Minolta/Sony AF 1.4x APO (D);144=Minolta AF 1.4x APO II;160=Minolta AF 1.4x APO
0112 WhiteBalanceFineTune
0114 CameraSettings
0115 WhiteBalance|0=Auto;1=Color Temperature/Color Filter;16=Daylight;32=Cloudy;48=Shade;64=Tungsten;80=Flash;96=Fluorescent;112=Custom
0116 ExtraInfo
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
2008 LongExposureNoiseReduction|0=Off;1=On (unused);65537=On (dark subtracted);4294901760=Off (65535);4294901761=On (65535);4294967295=n/a
2009 HighISONoiseReduction|0=Off;1=Low;2=Normal;3=High;256=Auto;65535=n/a
200A HDR
200B MultiFrameNoiseReduction|0=Off;1=On;255=n/a
200E PictureEffect|0=Off;1=Toy Camera;2=Pop Color;3=Posterization;4=Posterization B/W;5=Retro Photo;6=Soft High Key;7=Partial Color (red);8=Partial Color (green);9=Partial Color (blue);10=Partial Color (yellow);13=High Contrast Monochrome
200F SoftSkinEffect|0=Off;1=Low;2=Mid;3=High;4294967295=n/a
2011 VignettingCorrection|0=Off;2=Auto;4294967295=n/a
2012 LateralChromaticAberration|0=Off;2=Auto;4294967295=n/a
2013 DistortionCorrectionSetting|0=Off;2=Auto;4294967295=n/a
2014 WBShiftAB_GM
2016 AutoPortraitFramed|0=No;1=Yes
2017 FlashAction|0=Did not fire;1=Flash Fired;2=External Flash Fired;3=Wireless Controlled Flash Fired
201A ElectronicFrontCurtainShutter|0=Off;1=On
201B FocusMode|0=Manual;2=AF-S;3=AF-C;4=AF-A;6=DMF;7=AF-D
201C AFAreaModeSetting
201D FlexibleSpotPosition
201E AFPointSelected
2020 AFPointsUsed
2021 AFTracking|0=Off;1=Face tracking;2=Lock On AF
2022 FocalPlaneAFPointsUsed
2023 MultiFrameNREffect|0=Normal;1=High
2026 WBShiftAB_GM_Precise
2027 FocusLocation
2028 VariableLowPassFilter
2029 RAWFileType|0=Compressed RAW;1=Uncompressed RAW;2=Lossless Compressed RAW;65535=n/a
202B PrioritySetInAWB|0=Standard;1=Ambience;2=White
202C MeteringMode2
202D ExposureStandardAdjustment
202E Quality
202F PixelShiftInfo
2031 SerialNumber
2032 Shadows
2033 Highlights
2034 Fade
2035 SharpnessRange
2036 Clarity
2037 FocusFrameSize
2039 JPEG-HEIFSwitch|0=JPEG;1=HEIF;65535=n/a
3000 ShotInfo
940E AFInfo
B000 FileFormat
B001 SonyModelID
B020 CreativeStyle
B021 ColorTemperature
B022 ColorCompensationFilter
B023 SceneMode|0=Standard;1=Portrait;2=Text;3=Night Scene;4=Sunset;5=Sports;6=Landscape;7=Night Portrait;8=Macro;9=Super Macro;16=Auto;17=Night View/Portrait
B024 ZoneMatching|0=ISO Setting Used;1=High Key;2=Low Key
B025 DynamicRangeOptimizer|0=Off;1=Standard;2=Advanced Auto;3=Auto;8=Advanced Lv1;9=Advanced Lv2;10=Advanced Lv3;11=Advanced Lv4;12=Advanced Lv5
B026 ImageStabilization|0=Off;1=On
B027 LensType
B028 MinoltaMakerNote
B029 ColorMode|0=Standard;1=Vivid;2=Portrait;3=Landscape;4=Sunset;5=Night View/Portrait;6=B&W;7=Adobe RGB;12=Neutral;13=Clear;14=Deep;15=Light;16=Autumn Leaves;17=Sepia;100=Neutral;101=Clear;102=Deep;103=Light;104=Night View;105=Autumn Leaves
B02A LensSpec
B02B FullImageSize
B02C PreviewImageSize
B040 Macro|0=Off;1=On;2=Close Focus;65535=n/a
B041 ExposureMode|0=Program AE;1=Portrait;2=Beach;3=Sports;4=Snow;5=Landscape;6=Auto;7=Aperture-priority AE;8=Shutter speed priority AE;9=Night Scene / Twilight;10=Hi-Speed Shutter;11=Twilight Portrait;12=Soft Snap/Portrait;13=Fireworks;14=Smile Shutter;15=Manual
B042 FocusMode|1=AF-S;2=AF-C;4=Permanent-AF;65535=n/a
B043 AFAreaMode|0=Default;1=Multi;2=Center;3=Spot;4=Flexible Spot;6=Touch;14=Tracking;15=Face Tracking;65535=n/a
B044 AFIlluminator|0=Off;1=Auto;65535=n/a
B047 JPEGQuality|0=Standard;1=Fine;2=Extra Fine;65535=n/a
B048 FlashLevel
B049 ReleaseMode|0=Normal;2=Continuous;5=Exposure Bracketing;6=White Balance Bracketing;65535=n/a
B04A SequenceNumber|0=Single;65535=n/a
B04B Anti-Blur|0=Off;1=On (Continuous);2=On (Shooting);65535=n/a
B04E LongExposureNoiseReduction|0=Off;1=On;65535=n/a
B04F DynamicRangeOptimizer|0=Off;1=Standard;2=Plus
B050 HighISONoiseReduction2|0=Normal;1=High;2=Low;3=Off;65535=n/a
B052 IntelligentAuto|0=Off;1=On;2=Advanced
B054 WhiteBalance|0=Auto;4=Custom;5=Daylight;6=Cloudy;7=Cool White Fluorescent;8=Day White Fluorescent;9=Daylight Fluorescent;10=Incandescent2;11=Warm White Fluorescent;14=Incandescent;15=Flash;17=Underwater 1 (Blue Water);18=Underwater 2 (Green Water);19=Underwater Auto
)";

// Kyocera and Contax publish two tags only; their other entries have no name.
const char* const kKyocera = R"(
0001 ThumbnailImage
0E00 PrintIM
)";

const char* const kPanasonic = R"(
0001 ImageQuality|1=TIFF;2=High;3=Normal;6=Very High;7=RAW;9=Motion Picture;11=Full HD Movie;12=4k Movie
0002 FirmwareVersion
0003 WhiteBalance|1=Auto;2=Daylight;3=Cloudy;4=Incandescent;5=Manual;8=Flash;10=Black & White;11=Manual 2;12=Shade;13=Kelvin;14=Manual 3;15=Manual 4;19=Auto (cool)
0007 FocusMode|1=Auto;2=Manual;4=Auto, Focus button;5=Auto, Continuous;6=AF-S;7=AF-C;8=AF-F
000F AFAreaMode
001A ImageStabilization|2=On, Optical;3=Off;4=On, Mode 2;5=On, Optical Panning;6=On, Body-only;7=On, Body-only Panning;9=Dual IS;10=Dual IS Panning;11=Dual2 IS;12=Dual2 IS Panning
001C MacroMode|1=On;2=Off;257=Tele-Macro;513=Macro Zoom
001F ShootingMode|1=Normal;2=Portrait;3=Scenery;4=Sports;5=Night Portrait;6=Program;7=Aperture Priority;8=Shutter Priority;9=Macro;10=Spot;11=Manual;12=Movie Preview;13=Panning;14=Simple;15=Color Effects;16=Self Portrait;17=Economy;18=Fireworks;19=Party;20=Snow;21=Night Scenery;22=Food;23=Baby;24=Soft Skin;25=Candlelight;26=Starry Night;27=High Sensitivity;28=Panorama Assist;29=Underwater;30=Beach;31=Aerial Photo;32=Sunset;33=Pet;34=Intelligent ISO
0020 Audio|1=Yes;2=No
0021 DataDump
0023 WhiteBalanceBias
0024 FlashBias
0025 InternalSerialNumber
0026 PanasonicExifVersion
0027 VideoFrameRate|0=n/a
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
0038 BatteryLevel|1=Full;2=Medium;3=Low;4=Near Empty;7=Near Full;8=Medium Low;256=n/a
0039 Contrast
003A WorldTimeLocation|1=Home;2=Destination
003B TextStamp|1=Off;2=On
003C ProgramISO
003D AdvancedSceneType
003E TextStamp|1=Off;2=On
003F FacesDetected
0040 Saturation|0=Normal
0041 Sharpness|0=Normal
0042 FilmMode|0=n/a;1=Standard (color);2=Dynamic (color);3=Nature (color);4=Smooth (color);5=Standard (B&W);6=Dynamic (B&W);7=Smooth (B&W)
0043 JPEGQuality|0=n/a (Movie);2=High;3=Standard;6=Very High;255=n/a (RAW only)
0044 ColorTempKelvin
0045 BracketSettings
0046 WBShiftAB
0047 WBShiftGM
0048 FlashCurtain|0=n/a;1=1st;2=2nd
0049 LongExposureNoiseReduction|1=Off;2=On
004B PanasonicImageWidth
004C PanasonicImageHeight
004D AFPointPosition
004E FaceDetInfo
0051 LensType
0052 LensSerialNumber
0053 AccessoryType
0054 AccessorySerialNumber
0059 Transform
005D IntelligentExposure|0=Off;1=Low;2=Standard;3=High
0060 LensFirmwareVersion
0061 FaceRecInfo
0062 FlashWarning|0=No;1=Yes (flash required but disabled)
0063 RecognizedFaceFlags
0065 Title
0066 BabyName
0067 Location
0069 Country
006B State
006D City
006F Landmark
0070 IntelligentResolution|0=Off;1=Low;2=Standard;3=High;4=Extended
0076 HDRShot|0=Off;3=On
0077 BurstSpeed
0079 IntelligentD-Range|0=Off;1=Low;2=Standard;3=High
007C ClearRetouch|0=Off;1=On
0080 City2
0086 ManometerPressure
0089 PhotoStyle|0=Auto;1=Standard or Custom;2=Vivid;3=Natural;4=Monochrome;5=Scenery;6=Portrait
008A ShadingCompensation|0=Off;1=On
008B WBShiftIntelligentAuto
008C AccelerometerZ
008D AccelerometerX
008E AccelerometerY
008F CameraOrientation|0=Normal;1=Rotate CW;2=Rotate 180;3=Rotate CCW;4=Tilt Upwards;5=Tilt Downwards
0090 RollAngle
0091 PitchAngle
0092 WBShiftCreativeControl
0093 SweepPanoramaDirection|0=Off;1=Left to Right;2=Right to Left;3=Top to Bottom;4=Bottom to Top
0094 SweepPanoramaFieldOfView
0096 TimerRecording|0=Off;1=Time Lapse;2=Stop-motion Animation
009D InternalNDFilter
009E HDR|0=Off;100=1 EV;200=2 EV;300=3 EV;32868=1 EV (Auto);32968=2 EV (Auto);33068=3 EV (Auto)
009F ShutterType|0=Mechanical;1=Electronic;2=Hybrid
00A1 FilterEffect
00A3 ClearRetouchValue
00A7 OutputLUT
00AB TouchAE|0=Off;1=On
00AC MonochromeFilterEffect|0=Off;1=Yellow;2=Orange;3=Red;4=Green
00AD HighlightShadow
00AF TimeStamp
00B3 VideoBurstResolution|1=Off or 4K;4=6K
00B4 MultiExposure|0=n/a;1=Off;2=On
00B9 RedEyeRemoval|0=Off;1=On
00BB VideoBurstMode|1=Off;4=Post Focus;24=4K Burst;40=4K Burst (Start/Stop);72=4K Pre-burst;264=Loop Recording;1032=Focus Stacking;2064=6K Burst;2080=6K Burst (Start/Stop);4097=High Resolution Mode
00BC DiffractionCorrection|0=Off;1=Auto
00BD FocusBracket
00BE LongExposureNRUsed|0=No;1=Yes
00BF PostFocusMerging
00C1 VideoPreburst|0=No;1=4K or 6K
00C4 LensTypeMake
00C5 LensTypeModel
00CA SensorType|0=Multi-aspect;1=Standard
00D1 ISO
00D2 MonochromeGrainEffect|0=Off;1=Low;2=Standard;3=High
00D6 NoiseReductionStrength
00E4 LensTypeModel
00E8 MinimumISO
00EE DynamicRangeBoost|0=Off;1=On
0E00 PrintIM
8000 MakerNoteVersion
8001 SceneMode
8002 HighlightWarning|0=Disabled;1=No;2=Yes
8003 DarkFocusEnvironment|1=No;2=Yes
8004 WBRedLevel
8005 WBGreenLevel
8006 WBBlueLevel
8008 TextStamp|1=Off;2=On
8009 TextStamp|1=Off;2=On
8010 BabyAge
8012 Transform
)";

// Pentax notes of version 1 (no "AOC" header): the early Optio cameras.
const char* const kPentax = R"(
0001 RecordingMode|0=Auto;1=Night Scene;2=Manual
0002 Quality|0=Good;1=Better;2=Best
0003 FocusMode|2=Custom;3=Auto
0004 FlashMode|1=Auto;2=On;4=Off;6=Red-eye reduction
0007 WhiteBalance|0=Auto;1=Daylight;2=Shade;3=Tungsten;4=Fluorescent;5=Manual
000A DigitalZoom
000B Sharpness|0=Normal;1=Soft;2=Hard
000C Contrast|0=Normal;1=Low;2=High
000D Saturation|0=Normal;1=Low;2=High
0014 ISO|10=100;16=200;50=50;100=100;200=200;400=400;800=800;1600=1600;3200=3200;65534=Auto 2;65535=Auto
0017 ColorFilter|1=Full;2=Black & White;3=Sepia
0E00 PrintIM
1000 HometownCityCode
1001 DestinationCityCode
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
0008 Quality|0=Good;1=Better;2=Best;3=TIFF;4=RAW;5=Premium;7=RAW (pixel shift enabled);8=Dynamic Pixel Shift;65535=n/a
0009 PentaxImageSize|0=640x480;1=Full;2=1024x768;3=1280x960;4=1600x1200;5=2048x1536;9=3072x2304;19=320x240;20=2288x1712;21=2592x1944;27=3648x2736;29=4000x3000;30=4288x3216;31=4608x3456
000B PictureMode|0=Program;1=Shutter Speed Priority;2=Program AE;3=Manual;5=Portrait;6=Landscape;8=Sport;9=Night Scene;11=Soft;12=Surf & Snow;13=Candlelight;14=Autumn;15=Macro;17=Fireworks;18=Text;19=Panorama;20=3-D;21=Black & White;22=Sepia;23=Red;24=Pink;25=Purple;26=Blue;27=Green;28=Yellow;30=Self Portrait;31=Illustrations;33=Digital Filter;35=Night Scene Portrait;37=Museum;38=Food;39=Underwater;40=Green Mode
000C FlashMode
000D FocusMode|0=Normal;1=Macro;2=Infinity;3=Manual;4=Super Macro;5=Pan Focus;16=AF-S (Focus-priority);17=AF-C (Focus-priority);18=AF-A (Focus-priority);32=Contrast-detect (Focus-priority);33=Tracking Contrast-detect (Focus-priority);272=AF-S (Release-priority);273=AF-C (Release-priority);274=AF-A (Release-priority);288=Contrast-detect (Release-priority)
000E AFPointSelected|0=None;1=Upper-left;2=Top;3=Upper-right;4=Left;5=Mid-left;6=Center;7=Mid-right;8=Right;9=Lower-left;10=Bottom;11=Lower-right;65531=AF Select;65532=Face Detect AF;65533=Automatic Tracking AF;65534=Fixed Center;65535=Auto
000F AFPointsInFocus
0010 FocusPosition
0012 ExposureTime
0013 FNumber
0014 ISO|3=50;4=64;5=80;6=100;7=125;8=160;9=200;10=250;11=320;12=400;13=500;14=640;15=800;16=1000;17=1250;18=1600;19=2000;20=2500;21=3200;22=4000;23=5000;24=6400;50=50;100=100;200=200;400=400;800=800;1600=1600;3200=3200
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
001F Saturation|0=-2 (low);1=0 (normal);2=+2 (high);3=-1 (medium low);4=+1 (medium high);5=-3 (very low);6=+3 (very high);7=-4 (minimum);8=+4 (maximum);65535=None
0020 Contrast|0=-2 (low);1=0 (normal);2=+2 (high);3=-1 (medium low);4=+1 (medium high);5=-3 (very low);6=+3 (very high);7=-4 (minimum);8=+4 (maximum);65535=n/a
0021 Sharpness|0=-2 (soft);1=0 (normal);2=+2 (hard);3=-1 (medium soft);4=+1 (medium hard);5=-3 (very soft);6=+3 (very hard);7=-4 (minimum);8=+4 (maximum)
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
003D DataScaling
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
0053 ColorTempDaylight
0054 ColorTempShade
0055 ColorTempCloudy
0056 ColorTempTungsten
0057 ColorTempFluorescentD
0058 ColorTempFluorescentN
0059 ColorTempFluorescentW
005A ColorTempFlash
005C ShakeReductionInfo
005D ShutterCount
0060 FaceInfo
0062 RawDevelopmentProcess
0067 Hue
0068 AWBInfo
0069 DynamicRangeExpansion
006B TimeInfo
006C HighLowKeyAdj
006D ContrastHighlight
006E ContrastShadow
006F ContrastHighlightShadowAdj
0070 FineSharpness
0071 HighISONoiseReduction
0072 AFAdjustment
0073 MonochromeFilterEffect
0074 MonochromeToning
0076 FaceDetect
0077 FaceDetectFrameSize
0079 ShadowCorrection
007A ISOAutoParameters
007B CrossProcess
007D LensCorr
007E WhiteLevel
007F BleachBypassToning
0080 AspectRatio|0=4:3;1=3:2;2=16:9;3=1:1
0082 BlurControl
0085 HDR
0087 ShutterType
0088 NeutralDensityFilter
008B ISO
0092 IntervalShooting
0095 SkinToneCorrection
0096 ClarityControl
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
020E WB_RGGBLevelsShade
020F WB_RGGBLevelsCloudy
0210 WB_RGGBLevelsTungsten
0211 WB_RGGBLevelsFluorescentD
0212 WB_RGGBLevelsFluorescentN
0213 WB_RGGBLevelsFluorescentW
0214 WB_RGGBLevelsFlash
0215 CameraInfo
0216 BatteryInfo
021B SaturationInfo
021C ColorMatrixA2
021D ColorMatrixB2
021F AFInfo
0220 HuffmanTable
0221 KelvinWB
0222 ColorInfo
0224 EVStepInfo
0226 ShotInfo
0227 FacePos
0228 FaceSize
0229 SerialNumber
022A FilterInfo
022B LevelInfo
022E Artist
022F Copyright
0230 FirmwareVersion
0231 ContrastDetectAFArea
0235 CrossProcessParams
0239 LensInfoQ
023F Model
0243 PixelShiftInfo
0245 AFPointInfo
03FE DataDump
03FF UnknownInfo
0402 ToneCurve
0403 ToneCurves
0405 UnknownBlock
0E00 PrintIM
)";

const char* const kRicoh = R"(
0001 MakerNoteType
0002 FirmwareVersion
0005 SerialNumber
0E00 PrintIM
1000 RecordingFormat|2=JPEG;3=DNG
1001 ExposureProgram|1=Auto;2=Program AE;3=Aperture-priority AE;4=Shutter speed priority AE;5=Shutter/aperture priority AE;6=Manual;7=Movie
1002 DriveMode|0=Single-frame;1=Continuous;8=AF-priority Continuous
1003 Sharpness|0=Sharp;1=Normal;2=Soft
1004 WhiteBalanceFineTune
1006 FocusMode|1=Manual;2=Multi AF;3=Spot AF;4=Snap;5=Infinity;7=Face Detect;8=Subject Tracking;9=Pinpoint AF
1007 AutoBracketing|0=Off;9=AE;11=WB;16=DR;17=Contrast;18=WB2;19=Effect
1009 MacroMode|0=Off;1=On
100A FlashMode|0=Off;1=Auto, Fired;2=On;3=Auto, Fired, Red-eye reduction;4=Slow Sync;5=Manual;6=On, Red-eye reduction;7=Synchro, Red-eye reduction;8=Auto, Did not fire
100B FlashExposureComp
100C ManualFlashOutput
100D FullPressSnap|0=Off;1=On
100E DynamicRangeExpansion|0=Off;3=Weak;4=Medium;5=Strong
100F NoiseReduction|0=Off;1=Weak;2=Medium;3=Strong
1010 ImageEffects|0=Standard;1=Vivid;3=Black & White;5=B&W Toning Effect;6=Setting 1;7=Setting 2;9=High-contrast B&W;10=Cross Process;11=Positive Film;12=Bleach Bypass;13=Retro;15=Miniature;17=High Key
1011 Vignetting|0=Off;1=Low;2=Medium;3=High
1012 Contrast
1013 Saturation
1014 Sharpness
1015 ToningEffect
1016 HueAdjust
1017 WideAdapter|0=Not Attached;2=Attached
1018 CropMode
1019 NDFilter|0=Off;1=On
101A WBBracketShotNumber
1200 AFStatus|0=Out of Focus;1=In Focus
1201 AFAreaXPosition1
1202 AFAreaYPosition1
1203 AFAreaXPosition
1204 AFAreaYPosition
1205 AFAreaMode|0=Auto;2=Manual
1307 ColorTempKelvin
1308 ColorTemperature
1500 FocalLength
1601 SensorWidth
1602 SensorHeight
1603 CroppedImageWidth
1604 CroppedImageHeight
2001 RicohSubdir
4001 ThetaSubdir
)";

// Canon's array tags: one text per tag, one line per element, the index in
// hexadecimal. Element 0 of most of them is the array's length in bytes.
const char* const kCanonCameraSettings = R"(
0001 MacroMode|1=Macro;2=Normal
0002 SelfTimer|0=Off
0003 Quality|-1=n/a;1=Economy;2=Normal;3=Fine;4=RAW;5=Superfine;7=CRAW;130=Light (RAW);131=Standard (RAW)
0004 CanonFlashMode|-1=n/a;0=Off;1=Auto;2=On;3=Red-eye reduction;4=Slow-sync;5=Red-eye reduction (Auto);6=Red-eye reduction (On);16=External flash
0005 ContinuousDrive|0=Single;1=Continuous;2=Movie;3=Continuous, Speed Priority;4=Continuous, Low;5=Continuous, High;6=Silent Single;8=Continuous, High+;9=Single, Silent;10=Continuous, Silent
0007 FocusMode|0=One-shot AF;1=AI Servo AF;2=AI Focus AF;3=Manual Focus (3);4=Single;5=Continuous;6=Manual Focus (6);16=Pan Focus;256=AF + MF;257=Live View;512=Movie Snap Focus;519=Movie Servo AF
0009 RecordMode|1=JPEG;2=CRW+THM;3=AVI+THM;4=TIF;5=TIF+JPEG;6=CR2;7=CR2+JPEG;9=MOV;10=MP4;11=CRM;12=CR3;13=CR3+JPEG;14=HIF;15=CR3+HIF
000A CanonImageSize|-1=n/a;0=Large;1=Medium;2=Small;5=Medium 1;6=Medium 2;7=Medium 3;8=Postcard;9=Widescreen;10=Medium Widescreen;14=Small 1;15=Small 2;16=Small 3;128=640x480 Movie;129=Medium Movie;130=Small Movie;137=1280x720 Movie;142=1920x1080 Movie;143=4096x2160 Movie
000B EasyMode|0=Full auto;1=Manual;2=Landscape;3=Fast shutter;4=Slow shutter;5=Night;6=Gray Scale;7=Sepia;8=Portrait;9=Sports;10=Macro;11=Black & White;12=Pan focus;13=Vivid;14=Neutral;15=Flash Off;16=Long Shutter;17=Super Macro;18=Foliage;19=Indoor;20=Fireworks;21=Beach;22=Underwater;23=Snow;24=Kids & Pets;25=Night Snapshot;26=Digital Macro;27=My Colors;28=Movie Snap;29=Super Macro 2;30=Color Accent;31=Color Swap;32=Aquarium;33=ISO 3200;34=ISO 6400;35=Creative Light Effect;36=Easy;37=Quick Shot;38=Creative Auto;39=Zoom Blur;40=Low Light;41=Nostalgic;42=Super Vivid;43=Poster Effect;44=Face Self-timer;45=Smile;46=Wink Self-timer;47=Fisheye Effect;48=Miniature Effect;49=High-speed Burst;50=Best Image Selection;51=High Dynamic Range;52=Handheld Night Scene;53=Movie Digest;54=Live View Control;55=Discreet;56=Blur Reduction;57=Monochrome;58=Toy Camera Effect;59=Scene Intelligent Auto;60=High-speed Burst HQ;61=Smooth Skin;62=Soft Focus;257=Spotlight;258=Night 2;259=Night+;260=Super Night;261=Sunset;263=Night Scene;264=Surface;265=Low Light 2
000C DigitalZoom|0=None;1=2x;2=4x;3=Other
000D Contrast|-1=Low;0=Normal;1=High;32767=n/a
000E Saturation|-1=Low;0=Normal;1=High;32767=n/a
000F Sharpness|32767=n/a
0010 CameraISO|14=Auto High;15=Auto;16=50;17=100;18=200;19=400;20=800;32767=n/a
0011 MeteringMode|0=Default;1=Spot;2=Average;3=Evaluative;4=Partial;5=Center-weighted average
0012 FocusRange|0=Manual;1=Auto;2=Not Known;3=Macro;4=Very Close;5=Close;6=Middle Range;7=Far Range;8=Pan Focus;9=Super Macro;10=Infinity
0013 AFPoint|8197=Manual AF point selection;12288=None (MF);12289=Auto AF point selection;12290=Right;12291=Center;12292=Left;16385=Auto AF point selection;16390=Face Detect
0014 CanonExposureMode|0=Easy;1=Program AE;2=Shutter speed priority AE;3=Aperture-priority AE;4=Manual;5=Depth-of-field AE;6=M-Dep;7=Bulb;8=Flexible-priority AE
0016 LensType
0017 MaxFocalLength
0018 MinFocalLength
0019 FocalUnits
001A MaxAperture
001B MinAperture
001C FlashActivity
001D FlashBits
0020 FocusContinuous|0=Single;1=Continuous;8=Manual
0021 AESetting|0=Normal AE;1=Exposure Compensation;2=AE Lock;3=AE Lock + Exposure Comp.;4=No AE
0022 ImageStabilization|0=Off;1=On;2=Shoot Only;3=Panning;4=Dynamic;256=Off (2);257=On (2);258=Shoot Only (2);259=Panning (2);260=Dynamic (2)
0023 DisplayAperture
0024 ZoomSourceWidth
0025 ZoomTargetWidth
0027 SpotMeteringMode|0=Center;1=AF Point
0028 PhotoEffect|0=Off;1=Vivid;2=Neutral;3=Smooth;4=Sepia;5=B&W;6=Custom;100=My Color Data
0029 ManualFlashOutput|0=n/a;1280=Full;1282=Medium;1284=Low;32767=n/a
002A ColorTone
002E SRAWQuality|0=n/a;1=sRAW1 (mRAW);2=sRAW2 (sRAW)
0032 FocusBracketing|0=Disable;1=Enable
0033 Clarity
0034 HDR-PQ|-1=n/a;0=Off;1=On
)";

const char* const kCanonFocalLength = R"(
0000 FocalType|1=Fixed;2=Zoom
0001 FocalLength
0002 FocalPlaneXSize
0003 FocalPlaneYSize
)";

const char* const kCanonShotInfo = R"(
0001 AutoISO
0002 BaseISO
0003 MeasuredEV
0004 TargetAperture
0005 TargetExposureTime
0006 ExposureCompensation
0007 WhiteBalance|0=Auto;1=Daylight;2=Cloudy;3=Tungsten;4=Fluorescent;5=Flash;6=Custom;7=Black & White;8=Shade;9=Manual Temperature (Kelvin);10=PC Set1;11=PC Set2;12=PC Set3;14=Daylight Fluorescent;15=Custom 1;16=Custom 2;17=Underwater;18=Custom 3;19=Custom 4;20=PC Set4;21=PC Set5;23=Auto (ambience priority)
0008 SlowShutter|-1=n/a;0=Off;1=Night Scene;2=On;3=None
0009 SequenceNumber
000A OpticalZoomCode
000C CameraTemperature
000D FlashGuideNumber
000E AFPointsInFocus|12288=None (MF);12289=Right;12290=Center;12291=Center+Right;12292=Left;12293=Left+Right;12294=Left+Center;12295=All
000F FlashExposureComp
0010 AutoExposureBracketing|-1=On;0=Off;1=On (shot 1);2=On (shot 2);3=On (shot 3)
0011 AEBBracketValue
0012 ControlMode|0=n/a;1=Camera Local Control;3=Computer Remote Control
0013 FocusDistanceUpper
0014 FocusDistanceLower
0015 FNumber
0016 ExposureTime
0017 MeasuredEV2
0018 BulbDuration
001A CameraType|0=n/a;248=EOS High-end;250=Compact;252=EOS Mid-range;255=DV Camera
001B AutoRotate|-1=n/a;0=None;1=Rotate 90 CW;2=Rotate 180;3=Rotate 270 CW
001C NDFilter|-1=n/a;0=Off;1=On
001D SelfTimer2
0021 FlashOutput
)";

const char* const kCanonPanorama = R"(
0002 PanoramaFrameNumber
0005 PanoramaDirection|0=Left to Right;1=Right to Left;2=Bottom to Top;3=Top to Bottom;4=2x2 Matrix (Clockwise)
)";

// Only the fixed head: the positions that follow depend on NumAFPoints.
const char* const kCanonAFInfo = R"(
0000 NumAFPoints
0001 ValidAFPoints
0002 CanonImageWidth
0003 CanonImageHeight
0004 AFImageWidth
0005 AFImageHeight
0006 AFAreaWidth
0007 AFAreaHeight
)";

const char* const kCanonMyColors = R"(
0002 MyColorMode|0=Off;1=Positive Film;2=Light Skin Tone;3=Dark Skin Tone;4=Vivid Blue;5=Vivid Green;6=Vivid Red;7=Color Accent;8=Color Swap;9=Custom;12=Vivid;13=Neutral;14=Sepia;15=B&W
)";

// Element 1 with 2 is FileNumber, one 32-bit number: not named here.
const char* const kCanonFileInfo = R"(
0003 BracketMode|0=Off;1=AEB;2=FEB;3=ISO;4=WB
0004 BracketValue
0005 BracketShotNumber
0006 RawJpgQuality|-1=n/a;1=Economy;2=Normal;3=Fine;4=RAW;5=Superfine;7=CRAW;130=Light (RAW);131=Standard (RAW)
0007 RawJpgSize|-1=n/a;0=Large;1=Medium;2=Small;5=Medium 1;6=Medium 2;7=Medium 3;8=Postcard;9=Widescreen;10=Medium Widescreen;14=Small 1;15=Small 2;16=Small 3
0008 LongExposureNoiseReduction2|0=Off;1=On (1D);3=On;4=Auto
0009 WBBracketMode|0=Off;1=On (shift AB);2=On (shift GM)
000C WBBracketValueAB
000D WBBracketValueGM
000E FilterEffect|0=None;1=Yellow;2=Orange;3=Red;4=Green
000F ToningEffect|0=None;1=Sepia;2=Blue;3=Purple;4=Green
0010 MacroMagnification
0013 LiveViewShooting|0=Off;1=On
0014 FocusDistanceUpper
0015 FocusDistanceLower
0017 ShutterMode|0=Mechanical;1=Electronic First Curtain;2=Electronic
0019 FlashExposureLock|0=Off;1=On
)";

const char* const kCanonProcessingInfo = R"(
0001 ToneCurve|0=Standard;1=Manual;2=Custom
0002 Sharpness
0003 SharpnessFrequency|0=n/a;1=Lowest;2=Low;3=Standard;4=High;5=Highest
0004 SensorRedLevel
0005 SensorBlueLevel
0006 WhiteBalanceRed
0007 WhiteBalanceBlue
0008 WhiteBalance|0=Auto;1=Daylight;2=Cloudy;3=Tungsten;4=Fluorescent;5=Flash;6=Custom;7=Black & White;8=Shade;9=Manual Temperature (Kelvin);10=PC Set1;11=PC Set2;12=PC Set3;14=Daylight Fluorescent;15=Custom 1;16=Custom 2;17=Underwater;18=Custom 3;19=Custom 4;20=PC Set4;21=PC Set5;23=Auto (ambience priority)
0009 ColorTemperature
000A PictureStyle|0=None;1=Standard;2=Portrait;3=High Saturation;4=Adobe RGB;5=Low Saturation;6=CM Set 1;7=CM Set 2;33=User Def. 1;34=User Def. 2;35=User Def. 3;65=PC 1;66=PC 2;67=PC 3;129=Standard;130=Portrait;131=Landscape;132=Neutral;133=Faithful;134=Monochrome;135=Auto;136=Fine Detail
000B DigitalGain
000C WBShiftAB
000D WBShiftGM
)";

struct Ligne {
  QString nom;
  QHash<qint64, QString> sens;
  QHash<QString, QString> sensTexte;  // every meaning by its value as written
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
        if (egal <= 0) continue;
        // Sigma's letter codes are ASCII values: looked up as text only.
        if (nombre) l.sens.insert(v, paire.mid(egal + 1));
        l.sensTexte.insert(paire.left(egal), paire.mid(egal + 1));
      }
    t.insert(tag, l);
  }
  return t;
}

// Agfa and Epson write their notes in Olympus's layout, with its tags.
const Table* TableDe(int table) {
  static const Table tables[] = {
      Lire(kOlympus), Lire(kNikon),   Lire(kCasio),     Lire(kFuji),   Lire(kCanon),
      Lire(kSigma),   Lire(kSanyo),   Lire(kMinolta),   Lire(kSony),   Lire(kOlympus),
      Lire(kOlympus), Lire(kKyocera), Lire(kPanasonic), Lire(kPentax), Lire(kRicoh),
      Lire(kNikon1),  Lire(kCasio2),  Lire(kPentax2),
  };
  return table >= 0 && table < int(std::size(tables)) ? &tables[table] : nullptr;
}

struct TableauCanonDef {
  int32_t tag;
  bool signe;
  Table table;
};

const std::vector<TableauCanonDef>& TableauxCanon() {
  static const std::vector<TableauCanonDef> t = {
      {0x0001, true, Lire(kCanonCameraSettings)}, {0x0002, false, Lire(kCanonFocalLength)},
      {0x0004, true, Lire(kCanonShotInfo)},       {0x0005, true, Lire(kCanonPanorama)},
      {0x0012, false, Lire(kCanonAFInfo)},        {0x001D, false, Lire(kCanonMyColors)},
      {0x0093, true, Lire(kCanonFileInfo)},       {0x00A0, true, Lire(kCanonProcessingInfo)},
  };
  return t;
}

const TableauCanonDef* TrouverTableauCanon(int32_t tag) {
  for (const TableauCanonDef& d : TableauxCanon())
    if (d.tag == tag) return &d;
  return nullptr;
}

const Table* TableOlympus(int32_t repertoire) {
  static const std::vector<Table> tables = [] {
    std::vector<Table> t;
    for (const TexteSousRepertoire& s : kSousRepertoiresOlympus) t.push_back(Lire(s.texte));
    return t;
  }();
  for (size_t i = 0; i < std::size(kSousRepertoiresOlympus); ++i)
    if (kSousRepertoiresOlympus[i].tag == repertoire) return &tables[i];
  return nullptr;
}

// "1", "-1 -2 1": one number or several separated by single blanks.
bool Nombres(const QString& cle) {
  const QStringList parties = cle.split(u' ');
  for (const QString& p : parties) {
    bool ok = false;
    p.toLongLong(&ok);
    if (!ok || p.startsWith(u'+')) return false;
  }
  return true;
}

}  // namespace

QStringList DefautsTablesFabricants() {
  struct Texte {
    const char* nom;
    const char* texte;
    bool lettres;  // values written as letters are allowed
  };
  static const Texte textes[] = {
      {"Olympus", kOlympus, false},
      {"Nikon", kNikon, false},
      {"Nikon1", kNikon1, false},
      {"Casio", kCasio, false},
      {"Casio2", kCasio2, false},
      {"Fuji", kFuji, false},
      {"Canon", kCanon, false},
      {"CanonCameraSettings", kCanonCameraSettings, false},
      {"CanonFocalLength", kCanonFocalLength, false},
      {"CanonShotInfo", kCanonShotInfo, false},
      {"CanonPanorama", kCanonPanorama, false},
      {"CanonAFInfo", kCanonAFInfo, false},
      {"CanonMyColors", kCanonMyColors, false},
      {"CanonFileInfo", kCanonFileInfo, false},
      {"CanonProcessingInfo", kCanonProcessingInfo, false},
      {"Sigma", kSigma, true},
      {"Sanyo", kSanyo, false},
      {"Minolta", kMinolta, false},
      {"Sony", kSony, false},
      {"Kyocera", kKyocera, false},
      {"Panasonic", kPanasonic, false},
      {"Pentax", kPentax, false},
      {"Pentax2", kPentax2, false},
      {"Ricoh", kRicoh, false},
  };
  std::vector<Texte> tous(std::begin(textes), std::end(textes));
  // Equipment names its camera and lens codes as the makers write them.
  for (const TexteSousRepertoire& s : kSousRepertoiresOlympus)
    tous.push_back({s.nom, s.texte, s.tag == 0x2010});
  QStringList defauts;
  for (const Texte& t : tous) {
    QSet<int> vus;
    for (const QString& ligne : QString::fromUtf8(t.texte).split(u'\n', Qt::SkipEmptyParts)) {
      const QString ou = QStringLiteral("%1 : %2").arg(QLatin1String(t.nom), ligne.left(40));
      const int barre = ligne.indexOf(u'|');
      const QString tete = barre < 0 ? ligne : ligne.left(barre);
      bool ok = false;
      const int tag = tete.left(4).toInt(&ok, 16);
      const QString nom = tete.mid(5);
      if (!ok || tete.size() < 6 || tete[4] != u' ' || nom.isEmpty() || nom.contains(u' ')) {
        defauts << ou + QStringLiteral(" (en-tête)");
        continue;
      }
      if (vus.contains(tag)) defauts << ou + QStringLiteral(" (en double)");
      vus.insert(tag);
      if (barre < 0) continue;
      QSet<QString> valeurs;
      for (const QString& paire : ligne.mid(barre + 1).split(u';')) {
        const int egal = paire.indexOf(u'=');
        const bool nombre = egal > 0 && Nombres(paire.left(egal));
        if (egal <= 0 || egal == paire.size() - 1 || (!nombre && !t.lettres))
          defauts << ou + QStringLiteral(" (« %1 »)").arg(paire);
        else if (valeurs.contains(paire.left(egal)))
          defauts << ou + QStringLiteral(" (valeur %1 en double)").arg(paire.left(egal));
        valeurs.insert(paire.left(egal));
      }
    }
  }
  return defauts;
}

QString SignificationTexteFabricant(int table, int32_t tag, const QString& valeur) {
  const Table* t = TableDe(table);
  if (t == nullptr) return {};
  const auto it = t->find(tag);
  return it == t->end() ? QString() : it->sensTexte.value(valeur);
}

bool TableauCanon(int32_t tag) { return TrouverTableauCanon(tag) != nullptr; }

bool TableauCanonSigne(int32_t tag) {
  const TableauCanonDef* d = TrouverTableauCanon(tag);
  return d != nullptr && d->signe;
}

QString NomElementCanon(int32_t tag, int index) {
  const TableauCanonDef* d = TrouverTableauCanon(tag);
  if (d == nullptr) return {};
  const auto it = d->table.find(index);
  return it == d->table.end() ? QString() : it->nom;
}

QString SignificationElementCanon(int32_t tag, int index, int64_t valeur) {
  const TableauCanonDef* d = TrouverTableauCanon(tag);
  if (d == nullptr) return {};
  const auto it = d->table.find(index);
  return it == d->table.end() ? QString() : it->sens.value(valeur);
}

QString SousRepertoireOlympus(int32_t tag) {
  for (const TexteSousRepertoire& s : kSousRepertoiresOlympus)
    if (s.tag == tag) return QString::fromLatin1(s.nom);
  return {};
}

QString NomSousTagOlympus(int32_t repertoire, int32_t tag) {
  const Table* t = TableOlympus(repertoire);
  if (t == nullptr) return {};
  const auto it = t->find(tag);
  return it == t->end() ? QString() : it->nom;
}

QString SignificationSousTagOlympus(int32_t repertoire, int32_t tag, const QString& valeur) {
  const Table* t = TableOlympus(repertoire);
  if (t == nullptr) return {};
  const auto it = t->find(tag);
  return it == t->end() ? QString() : it->sensTexte.value(valeur);
}

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
