// Tag names and value meanings of the sub-directories of the Olympus notes
// (Equipment, CameraSettings, RawDevelopment, RawDevelopment2,
// ImageProcessing, FocusInfo), after the tag lists published for them.
#include "metadata/NomsOlympus.h"

namespace tg::meta {

namespace {

const char* const kOlympusEquipment = R"(
0000 EquipmentVersion
0100 CameraType2|D4028=X-2,C-50Z;D4029=E-20,E-20N,E-20P;D4034=C720UZ;D4040=E-1;D4041=E-300;D4083=C2Z,D520Z,C220Z;D4106=u20D,S400D,u400D;D4120=X-1;D4122=u10D,S300D,u300D;D4125=AZ-1;D4141=C150,D390;D4193=C-5000Z;D4194=X-3,C-60Z;D4199=u30D,S410D,u410D;D4205=X450,D535Z,C370Z;D4210=C160,D395;D4211=C725UZ;D4213=FerrariMODEL2003;D4216=u15D;D4217=u25D;D4220=u-miniD,Stylus V;D4221=u40D,S500,uD500;D4231=FerrariMODEL2004;D4240=X500,D590Z,C470Z;D4244=uD800,S800;D4256=u720SW,S720SW;D4261=X600,D630,FE5500;D4262=uD600,S600;D4301=u810/S810;D4302=u710,S710;D4303=u700,S700;D4304=FE100,X710;D4305=FE110,X705;D4310=FE-130,X-720;D4311=FE-140,X-725;D4312=FE150,X730;D4313=FE160,X735;D4314=u740,S740;D4315=u750,S750;D4316=u730/S730;D4317=FE115,X715;D4321=SP550UZ;D4322=SP510UZ;D4324=FE170,X760;D4326=FE200;D4327=FE190/X750;D4328=u760,S760;D4330=FE180/X745;D4331=u1000/S1000;D4332=u770SW,S770SW;D4333=FE240/X795;D4334=FE210,X775;D4336=FE230/X790;D4337=FE220,X785;D4338=u725SW,S725SW;D4339=FE250/X800;D4341=u780,S780;D4343=u790SW,S790SW;D4344=u1020,S1020;D4346=FE15,X10;D4348=FE280,X820,C520;D4349=FE300,X830;D4350=u820,S820;D4351=u1200,S1200;D4352=FE270,X815,C510;D4353=u795SW,S795SW;D4354=u1030SW,S1030SW;D4355=SP560UZ;D4356=u1010,S1010;D4357=u830,S830;D4359=u840,S840;D4360=FE350WIDE,X865;D4361=u850SW,S850SW;D4362=FE340,X855,C560;D4363=FE320,X835,C540;D4364=SP570UZ;D4366=FE330,X845,C550;D4368=FE310,X840,C530;D4370=u1050SW,S1050SW;D4371=u1060,S1060;D4372=FE370,X880,C575;D4374=SP565UZ;D4377=u1040,S1040;D4378=FE360,X875,C570;D4379=FE20,X15,C25;D4380=uT6000,ST6000;D4381=uT8000,ST8000;D4382=u9000,S9000;D4384=SP590UZ;D4385=FE3010,X895;D4386=FE3000,X890;D4387=FE35,X30;D4388=u550WP,S550WP;D4390=FE5000,X905;D4391=u5000;D4392=u7000,S7000;D4396=FE5010,X915;D4397=FE25,X20;D4398=FE45,X40;D4401=XZ-1;D4402=uT6010,ST6010;D4406=u7010,S7010 / u7020,S7020;D4407=FE4010,X930;D4408=X560WP;D4409=FE26,X21;D4410=FE4000,X920,X925;D4411=FE46,X41,X42;D4412=FE5020,X935;D4413=uTough-3000;D4414=StylusTough-6020;D4415=StylusTough-8010;D4417=u5010,S5010;D4418=u7040,S7040;D4419=u9010,S9010;D4423=FE4040;D4424=FE47,X43;D4426=FE4030,X950;D4428=FE5030,X965,X960;D4430=u7030,S7030;D4432=SP600UZ;D4434=SP800UZ;D4439=FE4020,X940;D4442=FE5035;D4448=FE4050,X970;D4450=FE5050,X985;D4454=u-7050;D4464=T10,X27;D4470=FE5040,X980;D4472=TG-310;D4474=TG-610;D4476=TG-810;D4478=VG145,VG140,D715;D4479=VG130,D710;D4480=VG120,D705;D4482=VR310,D720;D4484=VR320,D725;D4486=VR330,D730;D4488=VG110,D700;D4490=SP-610UZ;D4492=SZ-10;D4494=SZ-20;D4496=SZ-30MR;D4498=SP-810UZ;D4500=SZ-11;D4504=TG-615;D4508=TG-620;D4510=TG-820;D4512=TG-1;D4516=SH-21;D4519=SZ-14;D4520=SZ-31MR;D4521=SH-25MR;D4523=SP-720UZ;D4529=VG170;D4531=XZ-2;D4535=SP-620UZ;D4536=TG-320;D4537=VR340,D750;D4538=VG160,X990,D745;D4541=SZ-12;D4545=VH410;D4546=XZ-10;D4547=TG-2;D4548=TG-830;D4549=TG-630;D4550=SH-50;D4553=SZ-16,DZ-105;D4562=SP-820UZ;D4566=SZ-15;D4572=STYLUS1;D4574=TG-3;D4575=TG-850;D4579=SP-100EE;D4580=SH-60;D4581=SH-1;D4582=TG-835;D4585=SH-2 / SH-3;D4586=TG-4;D4587=TG-860;D4591=TG-870;D4593=TG-5;D4603=TG-6;D4809=C2500L;D4842=E-10;D4856=C-1;D4857=C-1Z,D-150Z;DCHC=D500L;DCHT=D600L / D620L;K0055=AIR-A01;S0003=E-330;S0004=E-500;S0009=E-400;S0010=E-510;S0011=E-3;S0013=E-410;S0016=E-420;S0017=E-30;S0018=E-520;S0019=E-P1;S0023=E-620;S0026=E-P2;S0027=E-PL1;S0029=E-450;S0030=E-600;S0032=E-P3;S0033=E-5;S0034=E-PL2;S0036=E-M5;S0038=E-PL3;S0039=E-PM1;S0040=E-PL1s;S0042=E-PL5;S0043=E-PM2;S0044=E-P5;S0045=E-PL6;S0046=E-PL7;S0047=E-M1;S0051=E-M10;S0052=E-M5MarkII;S0059=E-M10MarkII;S0061=PEN-F;S0065=E-PL8;S0067=E-M1MarkII;S0068=E-M10MarkIII;S0076=E-PL9;S0080=E-M1X;S0085=E-PL10;S0089=E-M5MarkIII;S0092=E-M1MarkIII;S0093=E-P7;S0095=OM-1;S0101=OM-5;SR45=D220;SR55=D320L;SR83=D340L;SR85=C830L,D340R;SR852=C860L,D360L;SR872=C900Z,D400Z;SR874=C960Z,D460Z;SR951=C2000Z;SR952=C21;SR953=C21T.commu;SR954=C2020Z;SR955=C990Z,D490Z;SR956=C211Z;SR959=C990ZS,D490Z;SR95A=C2100UZ;SR971=C100,D370;SR973=C2,D230;SX151=E100RS;SX351=C3000Z / C3030Z;SX354=C3040Z;SX355=C2040Z;SX357=C700UZ;SX358=C200Z,D510Z;SX374=C3100Z,C3020Z;SX552=C4040Z;SX553=C40Z,D40Z;SX556=C730UZ;SX558=C5050Z;SX571=C120,D380;SX574=C300Z,D550Z;SX575=C4100Z,C4000Z;SX751=X200,D560Z,C350Z;SX752=X300,D565Z,C450Z;SX753=C750UZ;SX754=C740UZ;SX755=C755UZ;SX756=C5060WZ;SX757=C8080WZ;SX758=X350,D575Z,C360Z;SX759=X400,D580Z,C460Z;SX75A=AZ-2ZOOM;SX75B=D595Z,C500Z;SX75C=X550,D545Z,C480Z;SX75D=IR-300;SX75F=C55Z,C5500Z;SX75G=C170,D425;SX75J=C180,D435;SX771=C760UZ;SX772=C770UZ;SX773=C745UZ;SX774=X250,D560Z,C350Z;SX775=X100,D540Z,C310Z;SX776=C460ZdelSol;SX777=C765UZ;SX77A=D555Z,C315Z;SX851=C7070WZ;SX852=C70Z,C7000Z;SX853=SP500UZ;SX854=SP310;SX855=SP350;SX873=SP320;SX875=FE180/X745;SX876=FE190/X750
0101 SerialNumber
0102 InternalSerialNumber
0103 FocalPlaneDiagonal
0104 BodyFirmwareVersion
0201 LensType|0 00 00=None;0 01 00=Olympus Zuiko Digital ED 50mm F2.0 Macro;0 01 01=Olympus Zuiko Digital 40-150mm F3.5-4.5;0 01 10=Olympus M.Zuiko Digital ED 14-42mm F3.5-5.6;0 02 00=Olympus Zuiko Digital ED 150mm F2.0;0 02 10=Olympus M.Zuiko Digital 17mm F2.8 Pancake;0 03 00=Olympus Zuiko Digital ED 300mm F2.8;0 03 10=Olympus M.Zuiko Digital ED 14-150mm F4.0-5.6 [II];0 04 10=Olympus M.Zuiko Digital ED 9-18mm F4.0-5.6;0 05 00=Olympus Zuiko Digital 14-54mm F2.8-3.5;0 05 01=Olympus Zuiko Digital Pro ED 90-250mm F2.8;0 05 10=Olympus M.Zuiko Digital ED 14-42mm F3.5-5.6 L;0 06 00=Olympus Zuiko Digital ED 50-200mm F2.8-3.5;0 06 01=Olympus Zuiko Digital ED 8mm F3.5 Fisheye;0 06 10=Olympus M.Zuiko Digital ED 40-150mm F4.0-5.6;0 07 00=Olympus Zuiko Digital 11-22mm F2.8-3.5;0 07 01=Olympus Zuiko Digital 18-180mm F3.5-6.3;0 07 10=Olympus M.Zuiko Digital ED 12mm F2.0;0 08 01=Olympus Zuiko Digital 70-300mm F4.0-5.6;0 08 10=Olympus M.Zuiko Digital ED 75-300mm F4.8-6.7;0 09 10=Olympus M.Zuiko Digital 14-42mm F3.5-5.6 II;0 10 01=Kenko Tokina Reflex 300mm F6.3 MF Macro;0 10 10=Olympus M.Zuiko Digital ED 12-50mm F3.5-6.3 EZ;0 11 10=Olympus M.Zuiko Digital 45mm F1.8;0 12 10=Olympus M.Zuiko Digital ED 60mm F2.8 Macro;0 13 10=Olympus M.Zuiko Digital 14-42mm F3.5-5.6 II R;0 14 10=Olympus M.Zuiko Digital ED 40-150mm F4.0-5.6 R;0 15 00=Olympus Zuiko Digital ED 7-14mm F4.0;0 15 10=Olympus M.Zuiko Digital ED 75mm F1.8;0 16 10=Olympus M.Zuiko Digital 17mm F1.8;0 17 00=Olympus Zuiko Digital Pro ED 35-100mm F2.0;0 18 00=Olympus Zuiko Digital 14-45mm F3.5-5.6;0 18 10=Olympus M.Zuiko Digital ED 75-300mm F4.8-6.7 II;0 19 10=Olympus M.Zuiko Digital ED 12-40mm F2.8 Pro;0 20 00=Olympus Zuiko Digital 35mm F3.5 Macro;0 20 10=Olympus M.Zuiko Digital ED 40-150mm F2.8 Pro;0 21 10=Olympus M.Zuiko Digital ED 14-42mm F3.5-5.6 EZ;0 22 00=Olympus Zuiko Digital 17.5-45mm F3.5-5.6;0 22 10=Olympus M.Zuiko Digital 25mm F1.8;0 23 00=Olympus Zuiko Digital ED 14-42mm F3.5-5.6;0 23 10=Olympus M.Zuiko Digital ED 7-14mm F2.8 Pro;0 24 00=Olympus Zuiko Digital ED 40-150mm F4.0-5.6;0 24 10=Olympus M.Zuiko Digital ED 300mm F4.0 IS Pro;0 25 10=Olympus M.Zuiko Digital ED 8mm F1.8 Fisheye Pro;0 26 10=Olympus M.Zuiko Digital ED 12-100mm F4.0 IS Pro;0 27 10=Olympus M.Zuiko Digital ED 30mm F3.5 Macro;0 28 10=Olympus M.Zuiko Digital ED 25mm F1.2 Pro;0 29 10=Olympus M.Zuiko Digital ED 17mm F1.2 Pro;0 30 00=Olympus Zuiko Digital ED 50-200mm F2.8-3.5 SWD;0 30 10=Olympus M.Zuiko Digital ED 45mm F1.2 Pro;0 31 00=Olympus Zuiko Digital ED 12-60mm F2.8-4.0 SWD;0 32 00=Olympus Zuiko Digital ED 14-35mm F2.0 SWD;0 32 10=Olympus M.Zuiko Digital ED 12-200mm F3.5-6.3;0 33 00=Olympus Zuiko Digital 25mm F2.8;0 33 10=Olympus M.Zuiko Digital 150-400mm F4.5 TC1.25x IS Pro;0 34 00=Olympus Zuiko Digital ED 9-18mm F4.0-5.6;0 34 10=Olympus M.Zuiko Digital ED 12-45mm F4.0 Pro;0 35 00=Olympus Zuiko Digital 14-54mm F2.8-3.5 II;0 35 10=Olympus M.Zuiko 100-400mm F5.0-6.3;0 36 10=Olympus M.Zuiko Digital ED 8-25mm F4 Pro;0 37 10=Olympus M.Zuiko Digital ED 40-150mm F4.0 Pro;0 39 10=Olympus M.Zuiko Digital ED 90mm F3.5 Macro IS Pro;1 01 00=Sigma 18-50mm F3.5-5.6 DC;1 01 10=Sigma 30mm F2.8 EX DN;1 02 00=Sigma 55-200mm F4.0-5.6 DC;1 02 10=Sigma 19mm F2.8 EX DN;1 03 00=Sigma 18-125mm F3.5-5.6 DC;1 03 10=Sigma 30mm F2.8 DN | A;1 04 00=Sigma 18-125mm F3.5-5.6 DC;1 04 10=Sigma 19mm F2.8 DN | A;1 05 00=Sigma 30mm F1.4 EX DC HSM;1 05 10=Sigma 60mm F2.8 DN | A;1 06 00=Sigma APO 50-500mm F4.0-6.3 EX DG HSM;1 06 10=Sigma 30mm F1.4 DC DN | C;1 07 00=Sigma Macro 105mm F2.8 EX DG;1 07 10=Sigma 16mm F1.4 DC DN | C (017);1 08 00=Sigma APO Macro 150mm F2.8 EX DG HSM;1 09 00=Sigma 18-50mm F2.8 EX DC Macro;1 10 00=Sigma 24mm F1.8 EX DG Aspherical Macro;1 11 00=Sigma APO 135-400mm F4.5-5.6 DG;1 12 00=Sigma APO 300-800mm F5.6 EX DG HSM;1 13 00=Sigma 30mm F1.4 EX DC HSM;1 14 00=Sigma APO 50-500mm F4.0-6.3 EX DG HSM;1 15 00=Sigma 10-20mm F4.0-5.6 EX DC HSM;1 16 00=Sigma APO 70-200mm F2.8 II EX DG Macro HSM;1 17 00=Sigma 50mm F1.4 EX DG HSM;2 01 00=Leica D Vario Elmarit 14-50mm F2.8-3.5 Asph.;2 01 10=Lumix G Vario 14-45mm F3.5-5.6 Asph. Mega OIS;2 02 00=Leica D Summilux 25mm F1.4 Asph.;2 02 10=Lumix G Vario 45-200mm F4.0-5.6 Mega OIS;2 03 00=Leica D Vario Elmar 14-50mm F3.8-5.6 Asph. Mega OIS;2 03 01=Leica D Vario Elmar 14-50mm F3.8-5.6 Asph.;2 03 10=Lumix G Vario HD 14-140mm F4.0-5.8 Asph. Mega OIS;2 04 00=Leica D Vario Elmar 14-150mm F3.5-5.6;2 04 10=Lumix G Vario 7-14mm F4.0 Asph.;2 05 10=Lumix G 20mm F1.7 Asph.;2 06 10=Leica DG Macro-Elmarit 45mm F2.8 Asph. Mega OIS;2 07 10=Lumix G Vario 14-42mm F3.5-5.6 Asph. Mega OIS;2 08 10=Lumix G Fisheye 8mm F3.5;2 09 10=Lumix G Vario 100-300mm F4.0-5.6 Mega OIS;2 10 10=Lumix G 14mm F2.5 Asph.;2 11 10=Lumix G 12.5mm F12 3D;2 12 10=Leica DG Summilux 25mm F1.4 Asph.;2 13 10=Lumix G X Vario PZ 45-175mm F4.0-5.6 Asph. Power OIS;2 14 10=Lumix G X Vario PZ 14-42mm F3.5-5.6 Asph. Power OIS;2 15 10=Lumix G X Vario 12-35mm F2.8 Asph. Power OIS;2 16 10=Lumix G Vario 45-150mm F4.0-5.6 Asph. Mega OIS;2 17 10=Lumix G X Vario 35-100mm F2.8 Power OIS;2 18 10=Lumix G Vario 14-42mm F3.5-5.6 II Asph. Mega OIS;2 19 10=Lumix G Vario 14-140mm F3.5-5.6 Asph. Power OIS;2 20 10=Lumix G Vario 12-32mm F3.5-5.6 Asph. Mega OIS;2 21 10=Leica DG Nocticron 42.5mm F1.2 Asph. Power OIS;2 22 10=Leica DG Summilux 15mm F1.7 Asph.;2 23 10=Lumix G Vario 35-100mm F4.0-5.6 Asph. Mega OIS;2 24 10=Lumix G Macro 30mm F2.8 Asph. Mega OIS;2 25 10=Lumix G 42.5mm F1.7 Asph. Power OIS;2 26 10=Lumix G 25mm F1.7 Asph.;2 27 10=Leica DG Vario-Elmar 100-400mm F4.0-6.3 Asph. Power OIS;2 28 10=Lumix G Vario 12-60mm F3.5-5.6 Asph. Power OIS;2 29 10=Leica DG Summilux 12mm F1.4 Asph.;2 30 10=Leica DG Vario-Elmarit 12-60mm F2.8-4 Asph. Power OIS;2 31 10=Lumix G Vario 45-200mm F4.0-5.6 II;2 32 10=Lumix G Vario 100-300mm F4.0-5.6 II;2 33 10=Lumix G X Vario 12-35mm F2.8 II Asph. Power OIS;2 34 10=Lumix G Vario 35-100mm F2.8 II;2 35 10=Leica DG Vario-Elmarit 8-18mm F2.8-4 Asph.;2 36 10=Leica DG Elmarit 200mm F2.8 Power OIS;2 37 10=Leica DG Vario-Elmarit 50-200mm F2.8-4 Asph. Power OIS;2 38 10=Leica DG Vario-Summilux 10-25mm F1.7 Asph.;2 40 10=Leica DG Vario-Summilux 25-50mm F1.7 Asph.;3 01 00=Leica D Vario Elmarit 14-50mm F2.8-3.5 Asph.;3 02 00=Leica D Summilux 25mm F1.4 Asph.;5 01 10=Tamron 14-150mm F3.5-5.8 Di III;24 01 10=Venus Optics Laowa 50mm F2.8 2x Macro
0202 LensSerialNumber
0203 LensModel
0204 LensFirmwareVersion
0205 MaxApertureAtMinFocal
0206 MaxApertureAtMaxFocal
0207 MinFocalLength
0208 MaxFocalLength
020A MaxAperture
020B LensProperties
0301 Extender|0 00=None;0 04=Olympus Zuiko Digital EC-14 1.4x Teleconverter;0 08=Olympus EX-25 Extension Tube;0 10=Olympus Zuiko Digital EC-20 2.0x Teleconverter
0302 ExtenderSerialNumber
0303 ExtenderModel
0304 ExtenderFirmwareVersion
0403 ConversionLens
1000 FlashType|0=None;2=Simple E-System;3=E-System;4=E-System (body powered)
1001 FlashModel|0=None;1=FL-20;2=FL-50;3=RF-11;4=TF-22;5=FL-36;6=FL-50R;7=FL-36R;9=FL-14;11=FL-600R;13=FL-LM3;15=FL-900R
1002 FlashFirmwareVersion
1003 FlashSerialNumber
)";

const char* const kOlympusCameraSettings = R"(
0000 CameraSettingsVersion
0100 PreviewImageValid|0=No;1=Yes
0101 PreviewImageStart
0102 PreviewImageLength
0200 ExposureMode|1=Manual;2=Program;3=Aperture-priority AE;4=Shutter speed priority AE;5=Program-shift
0201 AELock|0=Off;1=On
0202 MeteringMode|2=Center-weighted average;3=Spot;5=ESP;261=Pattern+AF;515=Spot+Highlight control;1027=Spot+Shadow control
0203 ExposureShift
0204 NDFilter|0=Off;1=On
0300 MacroMode|0=Off;1=On;2=Super Macro
0301 FocusMode|0=Single AF;1=Sequential shooting AF;2=Continuous AF;3=Multi AF;4=Face Detect;10=MF
0302 FocusProcess|0=AF Not Used;1=AF Used
0303 AFSearch|0=Not Ready;1=Ready
0304 AFAreas
0305 AFPointSelected
0306 AFFineTune|0=Off;1=On
0307 AFFineTuneAdj
0308 FocusBracketStepSize
0309 AISubjectTrackingMode|0=Off;1=Motorsports;2=Airplanes;3=Trains;4=Birds;5=Dogs & Cats
0400 FlashMode|0=Off;1=On;2=Fill-in;4=Red-eye;8=Slow-sync;16=Forced On;32=2nd Curtain
0401 FlashExposureComp
0403 FlashRemoteControl|0=Off;1=Channel 1, Low;2=Channel 2, Low;3=Channel 3, Low;4=Channel 4, Low;9=Channel 1, Mid;10=Channel 2, Mid;11=Channel 3, Mid;12=Channel 4, Mid;17=Channel 1, High;18=Channel 2, High;19=Channel 3, High;20=Channel 4, High
0404 FlashControlMode|0=Off;3=TTL;4=Auto;5=Manual
0405 FlashIntensity
0406 ManualFlashStrength
0500 WhiteBalance2|0=Auto;1=Auto (Keep Warm Color Off);16=7500K (Fine Weather with Shade);17=6000K (Cloudy);18=5300K (Fine Weather);20=3000K (Tungsten light);21=3600K (Tungsten light-like);22=Auto Setup;23=5500K (Flash);33=6600K (Daylight fluorescent);34=4500K (Neutral white fluorescent);35=4000K (Cool white fluorescent);36=White Fluorescent;48=3600K (Tungsten light-like);67=Underwater;256=One Touch WB 1;257=One Touch WB 2;258=One Touch WB 3;259=One Touch WB 4;512=Custom WB 1;513=Custom WB 2;514=Custom WB 3;515=Custom WB 4
0501 WhiteBalanceTemperature
0502 WhiteBalanceBracket
0503 CustomSaturation
0504 ModifiedSaturation|0=Off;1=CM1 (Red Enhance);2=CM2 (Green Enhance);3=CM3 (Blue Enhance);4=CM4 (Skin Tones)
0505 ContrastSetting
0506 SharpnessSetting
0507 ColorSpace|0=sRGB;1=Adobe RGB;2=Pro Photo RGB
0509 SceneMode|0=Standard;6=Auto;7=Sport;8=Portrait;9=Landscape+Portrait;10=Landscape;11=Night Scene;12=Self Portrait;13=Panorama;14=2 in 1;15=Movie;16=Landscape+Portrait;17=Night+Portrait;18=Indoor;19=Fireworks;20=Sunset;21=Beauty Skin;22=Macro;23=Super Macro;24=Food;25=Documents;26=Museum;27=Shoot & Select;28=Beach & Snow;29=Self Protrait+Timer;30=Candle;31=Available Light;32=Behind Glass;33=My Mode;34=Pet;35=Underwater Wide1;36=Underwater Macro;37=Shoot & Select1;38=Shoot & Select2;39=High Key;40=Digital Image Stabilization;41=Auction;42=Beach;43=Snow;44=Underwater Wide2;45=Low Key;46=Children;47=Vivid;48=Nature Macro;49=Underwater Snapshot;50=Shooting Guide;54=Face Portrait;57=Bulb;59=Smile Shot;60=Quick Shutter;63=Slow Shutter;64=Bird Watching;65=Multiple Exposure;66=e-Portrait;67=Soft Background Shot;142=Hand-held Starlight;154=HDR;197=Panning;203=Light Trails;204=Backlight HDR;205=Silent;206=Multi Focus Shot
050A NoiseReduction|0=(none);1=Noise Reduction;2=Noise Filter;4=Noise Filter (ISO Boost);8=Auto
050B DistortionCorrection|0=Off;1=On
050C ShadingCompensation|0=Off;1=On
050D CompressionFactor
050F Gradation|-1 -1 1=Low Key;0 -1 1=Normal;0 0 0=n/a;1 -1 1=High Key
0520 PictureMode|1=Vivid;2=Natural;3=Muted;4=Portrait;5=i-Enhance;6=e-Portrait;7=Color Creator;9=Color Profile 1;10=Color Profile 2;11=Color Profile 3;12=Monochrome Profile 1;13=Monochrome Profile 2;14=Monochrome Profile 3;256=Monotone;512=Sepia
0521 PictureModeSaturation
0522 PictureModeHue
0523 PictureModeContrast
0524 PictureModeSharpness
0525 PictureModeBWFilter|0=n/a;1=Neutral;2=Yellow;3=Orange;4=Red;5=Green
0526 PictureModeTone|0=n/a;1=Neutral;2=Sepia;3=Blue;4=Purple;5=Green
0527 NoiseFilter|-1 -2 1=Low;-2 -2 1=Off;0 -2 1=Standard;0 0 0=n/a;1 -2 1=High
0529 ArtFilter|0=Off;1=Soft Focus;2=Pop Art;3=Pale & Light Color;4=Light Tone;5=Pin Hole;6=Grainy Film;9=Diorama;10=Cross Process;12=Fish Eye;13=Drawing;14=Gentle Sepia;15=Pale & Light Color II;16=Pop Art II;17=Pin Hole II;18=Pin Hole III;19=Grainy Film II;20=Dramatic Tone;21=Punk;22=Soft Focus 2;23=Sparkle;24=Watercolor;25=Key Line;26=Key Line II;27=Miniature;28=Reflection;29=Fragmented;31=Cross Process II;32=Dramatic Tone II;33=Watercolor I;34=Watercolor II;35=Diorama II;36=Vintage;37=Vintage II;38=Vintage III;39=Partial Color;40=Partial Color II;41=Partial Color III
052C MagicFilter|0=Off;1=Soft Focus;2=Pop Art;3=Pale & Light Color;4=Light Tone;5=Pin Hole;6=Grainy Film;9=Diorama;10=Cross Process;12=Fish Eye;13=Drawing;14=Gentle Sepia;15=Pale & Light Color II;16=Pop Art II;17=Pin Hole II;18=Pin Hole III;19=Grainy Film II;20=Dramatic Tone;21=Punk;22=Soft Focus 2;23=Sparkle;24=Watercolor;25=Key Line;26=Key Line II;27=Miniature;28=Reflection;29=Fragmented;31=Cross Process II;32=Dramatic Tone II;33=Watercolor I;34=Watercolor II;35=Diorama II;36=Vintage;37=Vintage II;38=Vintage III;39=Partial Color;40=Partial Color II;41=Partial Color III
052D PictureModeEffect|-1 -1 1=Low;0 -1 1=Standard;0 0 0=n/a;1 -1 1=High
052E ToneLevel|-31999=Highlights;-31998=Shadows;-31997=Midtones
052F ArtFilterEffect|0=Off;1=Soft Focus;2=Pop Art;3=Pale & Light Color;4=Light Tone;5=Pin Hole;6=Grainy Film;9=Diorama;10=Cross Process;12=Fish Eye;13=Drawing;14=Gentle Sepia;15=Pale & Light Color II;16=Pop Art II;17=Pin Hole II;18=Pin Hole III;19=Grainy Film II;20=Dramatic Tone;21=Punk;22=Soft Focus 2;23=Sparkle;24=Watercolor;25=Key Line;26=Key Line II;27=Miniature;28=Reflection;29=Fragmented;31=Cross Process II;32=Dramatic Tone II;33=Watercolor I;34=Watercolor II;35=Diorama II;36=Vintage;37=Vintage II;38=Vintage III;39=Partial Color;40=Partial Color II;41=Partial Color III
0532 ColorCreatorEffect
0537 MonochromeProfileSettings|0=No Filter;1=Yellow Filter;2=Orange Filter;3=Red Filter;4=Magenta Filter;5=Blue Filter;6=Cyan Filter;7=Green Filter;8=Yellow-green Filter
0538 FilmGrainEffect|0=Off;1=Low;2=Medium;3=High
0539 ColorProfileSettings
053A MonochromeVignetting
053B MonochromeColor|0=(none);1=Normal;2=Sepia;3=Blue;4=Purple;5=Green
0600 DriveMode
0601 PanoramaMode
0603 ImageQuality2|1=SQ;2=HQ;3=SHQ;4=RAW;5=SQ (5)
0604 ImageStabilization|0=Off;1=On, Mode 1;2=On, Mode 2;3=On, Mode 3;4=On, Mode 4
0804 StackedImage|0 0=No;3 2=ND2 (1EV);3 4=ND4 (2EV);3 8=ND8 (3EV);3 16=ND16 (4EV);3 32=ND32 (5EV);3 64=ND64 (6EV);5 4=HDR1;6 4=HDR2;8 8=Tripod high resolution;11 12=Hand-held high resolution (11 12);11 16=Hand-held high resolution (11 16)
0900 ManometerPressure
0901 ManometerReading
0902 ExtendedWBDetect|0=Off;1=On
0903 RollAngle
0904 PitchAngle
0908 DateTimeUTC
)";

const char* const kOlympusRawDevelopment = R"(
0000 RawDevVersion
0100 RawDevExposureBiasValue
0101 RawDevWhiteBalanceValue
0102 RawDevWBFineAdjustment
0103 RawDevGrayPoint
0104 RawDevSaturationEmphasis
0105 RawDevMemoryColorEmphasis
0106 RawDevContrastValue
0107 RawDevSharpnessValue
0108 RawDevColorSpace|0=sRGB;1=Adobe RGB;2=Pro Photo RGB
0109 RawDevEngine|0=High Speed;1=High Function;2=Advanced High Speed;3=Advanced High Function
010A RawDevNoiseReduction|0=(none);1=Noise Reduction;2=Noise Filter;4=Noise Filter (ISO Boost)
010B RawDevEditStatus|0=Original;1=Edited (Landscape);6=Edited (Portrait);8=Edited (Portrait)
010C RawDevSettings|0=(none);1=WB Color Temp;2=WB Gray Point;4=Saturation;8=Contrast;16=Sharpness;32=Color Space;64=High Function;128=Noise Reduction
)";

const char* const kOlympusRawDevelopment2 = R"(
0000 RawDevVersion
0100 RawDevExposureBiasValue
0101 RawDevWhiteBalance|1=Color Temperature;2=Gray Point
0102 RawDevWhiteBalanceValue
0103 RawDevWBFineAdjustment
0104 RawDevGrayPoint
0105 RawDevContrastValue
0106 RawDevSharpnessValue
0107 RawDevSaturationEmphasis
0108 RawDevMemoryColorEmphasis
0109 RawDevColorSpace|0=sRGB;1=Adobe RGB;2=Pro Photo RGB
010A RawDevNoiseReduction|0=(none);1=Noise Reduction;2=Noise Filter;4=Noise Filter (ISO Boost)
010B RawDevEngine|0=High Speed;1=High Function
010C RawDevPictureMode|1=Vivid;2=Natural;3=Muted;256=Monotone;512=Sepia
010D RawDevPMSaturation
010E RawDevPMContrast
010F RawDevPMSharpness
0110 RawDevPM_BWFilter|1=Neutral;2=Yellow;3=Orange;4=Red;5=Green
0111 RawDevPMPictureTone|1=Neutral;2=Sepia;3=Blue;4=Purple;5=Green
0112 RawDevGradation
0113 RawDevSaturation3
0119 RawDevAutoGradation|0=Off;1=On
0120 RawDevPMNoiseFilter
0121 RawDevArtFilter|0=Off;1=Soft Focus;2=Pop Art;3=Pale & Light Color;4=Light Tone;5=Pin Hole;6=Grainy Film;9=Diorama;10=Cross Process;12=Fish Eye;13=Drawing;14=Gentle Sepia;15=Pale & Light Color II;16=Pop Art II;17=Pin Hole II;18=Pin Hole III;19=Grainy Film II;20=Dramatic Tone;21=Punk;22=Soft Focus 2;23=Sparkle;24=Watercolor;25=Key Line;26=Key Line II;27=Miniature;28=Reflection;29=Fragmented;31=Cross Process II;32=Dramatic Tone II;33=Watercolor I;34=Watercolor II;35=Diorama II;36=Vintage;37=Vintage II;38=Vintage III;39=Partial Color;40=Partial Color II;41=Partial Color III
)";

const char* const kOlympusImageProcessing = R"(
0000 ImageProcessingVersion
0100 WB_RBLevels
0102 WB_RBLevels3000K
0103 WB_RBLevels3300K
0104 WB_RBLevels3600K
0105 WB_RBLevels3900K
0106 WB_RBLevels4000K
0107 WB_RBLevels4300K
0108 WB_RBLevels4500K
0109 WB_RBLevels4800K
010A WB_RBLevels5300K
010B WB_RBLevels6000K
010C WB_RBLevels6600K
010D WB_RBLevels7500K
010E WB_RBLevelsCWB1
010F WB_RBLevelsCWB2
0110 WB_RBLevelsCWB3
0111 WB_RBLevelsCWB4
0113 WB_GLevel3000K
0114 WB_GLevel3300K
0115 WB_GLevel3600K
0116 WB_GLevel3900K
0117 WB_GLevel4000K
0118 WB_GLevel4300K
0119 WB_GLevel4500K
011A WB_GLevel4800K
011B WB_GLevel5300K
011C WB_GLevel6000K
011D WB_GLevel6600K
011E WB_GLevel7500K
011F WB_GLevel
0200 ColorMatrix
0300 Enhancer
0301 EnhancerValues
0310 CoringFilter
0311 CoringValues
0600 BlackLevel2
0610 GainBase
0611 ValidBits
0612 CropLeft
0613 CropTop
0614 CropWidth
0615 CropHeight
0635 UnknownBlock1
0636 UnknownBlock2
0805 SensorCalibration
1010 NoiseReduction2|0=(none);1=Noise Reduction;2=Noise Filter;4=Noise Filter (ISO Boost)
1011 DistortionCorrection2|0=Off;1=On
1012 ShadingCompensation2|0=Off;1=On
101C MultipleExposureMode|0=Off;1=Live Composite;2=On (2 frames);3=On (3 frames)
1103 UnknownBlock3
1104 UnknownBlock4
1112 AspectRatio|1 1=4:3;1 4=1:1;2 1=3:2 (RAW);2 2=3:2;3 1=16:9 (RAW);3 3=16:9;4 1=1:1 (RAW);4 4=6:6;5 5=5:4;6 6=7:6;7 7=6:5;8 8=7:5;9 1=3:4 (RAW);9 9=3:4
1113 AspectFrame
1200 FacesDetected
1201 FaceDetectArea
1202 MaxFaces
1203 FaceDetectFrameSize
1207 FaceDetectFrameCrop
1306 CameraTemperature
1900 KeystoneCompensation|0 0=Off;0 1=On
1901 KeystoneDirection|0=Vertical;1=Horizontal
1906 KeystoneValue
)";

const char* const kOlympusFocusInfo = R"(
0000 FocusInfoVersion
0209 AutoFocus|0=Off;1=On
0210 SceneDetect
0211 SceneArea
0212 SceneDetectData
0300 ZoomStepCount
0301 FocusStepCount
0303 FocusStepInfinity
0304 FocusStepNear
0305 FocusDistance
0308 AFPoint
1201 ExternalFlash|0 0=Off;1 0=On
1203 ExternalFlashGuideNumber
1204 ExternalFlashBounce|0=Bounce or Off;1=Direct
1205 ExternalFlashZoom
1208 InternalFlash|0=Off;1=On;0 0=Off;1 0=On
1209 ManualFlash
120A MacroLED|0=Off;1=On
1500 SensorTemperature
1600 ImageStabilization
)";

}  // namespace

const TexteSousRepertoire kSousRepertoiresOlympus[6] = {
    {0x2010, "Equipment", kOlympusEquipment},
    {0x2020, "CameraSettings", kOlympusCameraSettings},
    {0x2030, "RawDevelopment", kOlympusRawDevelopment},
    {0x2031, "RawDevelopment2", kOlympusRawDevelopment2},
    {0x2040, "ImageProcessing", kOlympusImageProcessing},
    {0x2050, "FocusInfo", kOlympusFocusInfo},
};

}  // namespace tg::meta
