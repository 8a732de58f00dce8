# SPDX-License-Identifier: MIT
# What the open-source acknowledgment lists, in its order. A licence is named by its file in
# LICENSES/. A new component of the program is added here.

section(shipped "What Corvane ships")

component("Qt Core, Qt Gui and Qt Widgets" VERSION ${QT_VERSION}
  PURPOSE "The program's foundation, its windows and everything in them"
  COPYRIGHT "The Qt Company Ltd. and other contributors"
  LICENCES LGPL-3.0-only
  HOME https://www.qt.io/)
if(WITH_SERIAL_PORT)
  component("Qt Serial Port" VERSION ${QT_VERSION}
    PURPOSE "The way to an instrument when there is no VISA library"
    COPYRIGHT "2011-2019 Denis Shienkov"
              "2011 Sergey Belyashov"
              "2012-2013 Laszlo Papp"
              "2012 Andre Hartmann"
              "2016 The Qt Company Ltd."
    LICENCES LGPL-3.0-only
    HOME https://www.qt.io/)
endif()
component("Qt Svg with its image plugin" VERSION ${QT_VERSION}
  PURPOSE "Arrows and radio buttons"
  COPYRIGHT "2016-2019 The Qt Company Ltd."
            "2002 USC/Information Sciences Institute"
  LICENCES LGPL-3.0-only HPND-sell-variant
  HOME https://www.qt.io/)
component("Corvane Sans CN" VERSION 2.004
  PURPOSE "The program's font, a subset of Noto Sans CJK SC under a name of its own"
  COPYRIGHT "2014-2021 Adobe (http://www.adobe.com/)"
  LICENCES OFL-1.1
  HOME https://github.com/notofonts/noto-cjk)
if(NLOHMANN_JSON_VERSION) # with the simulator or the package tool
  component("JSON for Modern C++ (nlohmann-json)" VERSION ${NLOHMANN_JSON_VERSION}
    PURPOSE "The descriptions that the simulator and the package tool read"
    COPYRIGHT "2013-2022 Niels Lohmann"
              "2009 Florian Loitsch"
              "2008-2009 Bjoern Hoehrmann"
    LICENCES MIT
    HOME https://json.nlohmann.me/)
endif()
if(CLI11_VERSION) # with the package tool
  component("CLI11" VERSION ${CLI11_VERSION}
    PURPOSE "The command line of the package tool"
    COPYRIGHT "2017-2021 University of Cincinnati, developed by Henry Schreiner under NSF AWARD 1414736 and by the respective contributors"
    LICENCES BSD-3-Clause
    HOME https://github.com/CLIUtils/CLI11)
endif()
if(WITH_MINGW) # in the program, its folder and the simulator's library
  component("The runtime of GCC"
    PURPOSE "What every program compiled with MinGW-w64 needs (libgcc, libstdc++)"
    COPYRIGHT "Free Software Foundation, Inc."
    LICENCES GPL-3.0-only GCC-exception-3.1
    HOME https://gcc.gnu.org/)
  component("The runtime of MinGW-w64"
    PURPOSE "What every program compiled with MinGW-w64 needs (start-up code, winpthreads)"
    COPYRIGHT "2009-2016 the MinGW-w64 project"
              "2010 Lockless Inc."
              "1992, 1993 The Regents of the University of California"
    LICENCES MIT BSD-3-Clause
    HOME https://www.mingw-w64.org/)
endif()

section(inside-qt "What the Qt libraries hold")

component("PCRE2"
  COPYRIGHT "1997-2021 University of Cambridge" "2009-2021 Zoltan Herczeg"
  LICENCES BSD-3-Clause)
component("PCRE2's just-in-time compiler (sljit)"
  COPYRIGHT "2009-2020 Zoltan Herczeg"
  LICENCES BSD-2-Clause)
component("double-conversion"
  COPYRIGHT "2006-2012 the V8 project authors"
  LICENCES BSD-3-Clause)
component("zlib"
  COPYRIGHT "1995-2017 Jean-loup Gailly and Mark Adler"
  LICENCES Zlib)
component("Easing equations"
  COPYRIGHT "2001 Robert Penner"
  LICENCES BSD-3-Clause)
component("TinyCBOR"
  COPYRIGHT "2016-2019 Intel Corporation"
  LICENCES MIT)
component("forkfd"
  COPYRIGHT "2016-2020 Intel Corporation" "2015 Klarälvdalens Datakonsult AB, a KDAB Group company"
  LICENCES MIT)
component("strtoll and strtoull of FreeBSD"
  COPYRIGHT "1992-1993 The Regents of the University of California"
            "2011 The FreeBSD Foundation"
  LICENCES BSD-3-Clause)
component("Secure hash algorithms of RFC 6234"
  COPYRIGHT "2011 IETF Trust and the persons identified as authors of the code"
  LICENCES BSD-3-Clause)
component("Keccak (SHA-3)"
  COPYRIGHT "Guido Bertoni, Joan Daemen, Michaël Peeters and Gilles Van Assche"
            "1998-2013 Brian Gladman, Worcester, UK (brg_endian.h)"
  LICENCES CC0-1.0 LicenseRef-brg-endian)
component("Unicode character database and locale data"
  COPYRIGHT "1991-2020 Unicode, Inc."
  LICENCES LicenseRef-Unicode)
component("Public suffix list"
  COPYRIGHT "2007 Jo Hermans" "2007-2019 https://github.com/publicsuffix/list contributors"
  LICENCES MPL-2.0)
component("libpng"
  COPYRIGHT "1995-2019 The PNG Reference Library Authors"
            "2018-2019 Cosmin Truta"
            "2000-2018 Glenn Randers-Pehrson"
            "1996-1997 Andreas Dilger"
            "1995-1996 Guy Eric Schalnat, Group 42, Inc."
  LICENCES libpng-2.0)
component("FreeType"
  COPYRIGHT "1996-2020 David Turner, Robert Wilhelm, and Werner Lemberg and others"
  LICENCES FTL)
component("The PCF and BDF font drivers of FreeType"
  COPYRIGHT "2000-2014 Francesco Zappa Nardelli"
            "1990-1998 The Open Group"
            "2000 Computing Research Labs, New Mexico State University"
  LICENCES MIT)
component("HarfBuzz"
  COPYRIGHT "2010-2017 Google, Inc."
            "2012-2015 Mozilla Foundation"
            "2011 Codethink Limited"
            "2008-2010 Nokia Corporation and/or its subsidiary(-ies)"
            "2009 Keith Stribley"
            "2009 Martin Hosken and SIL International"
            "2007 Chris Wilson"
            "2006 Behdad Esfahbod"
            "1998-2005 David Turner and Werner Lemberg"
            "2004-2010 Red Hat, Inc."
            "2015 The Qt Company Ltd."
            "2015 Konstantin Ritt"
            "2016 Igalia S.L."
  LICENCES MIT-Modern-Variant)
component("MD4C"
  COPYRIGHT "2016-2020 Martin Mitáš"
  LICENCES MIT)
component("Pixman (ARM assembly)"
  COPYRIGHT "2009 Nokia Corporation"
  LICENCES MIT)
component("Vulkan Memory Allocator"
  COPYRIGHT "2017-2018 Advanced Micro Devices, Inc."
  LICENCES MIT)
