// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ResponseGrammar.h"

#include <QStringList>

using namespace Qt::StringLiterals;

// The order matters: the patterns are built from the pieces above them, at program start.

const QString AT_RE_BOOL = u"[0|1]"_s;
const QString AT_RE_DECIMAL = u"[-0-9.]+"_s;
const QString AT_RE_INTEGER = u"[-0-9]+"_s;
const QString AT_RE_HEX_DIGIT = u"[0-9a-fA-F]"_s;
const QString AT_RE_DATE = AT_RE_INTEGER + u"-[0-9]{1,2}-[0-9]{1,2}T[0-9]{1,2}:[0-9]{1,2}:[0-9]{1,2}Z"_s;

namespace {
const QString hex = AT_RE_HEX_DIGIT + u'+';
const QString decimalField = u'(' + AT_RE_DECIMAL + u')';
const QString integerField = u'(' + AT_RE_INTEGER + u')';
const QString hexField = u'(' + hex + u')';
const QString dateField = u'(' + AT_RE_DATE + u')';
} // namespace

const QString AT_RE_CMD_OK = u"$^"_s;
const QString AT_RE_CMD_ERROR = u"^(?<ERROR>[0-9]+)$"_s;
const QString AT_RE_CMD_ID = "^(?<ID>"_L1 + hex + ")$"_L1;
const QString AT_RE_CMD_ADDR = "^(?<ADDR>"_L1 + hex + ")$"_L1;
const QString AT_RE_CMD_FW = u"^(?<FW>.*)$"_s;
const QString AT_RE_CMD_TX = "^("_L1 + integerField + ",(?<TX>"_L1 + hex + ")?)$"_L1;

const QString AT_RE_CMD_PREPASS_EN = u"^(?<PREPASS_EN>[0-2]{1})$"_s;
const QString AT_RE_CMD_PREPASS_CFG = // latitude, longitude, start, end, elevations from and to, shortest pass,
    "^(?<PREPASS_CFG>"_L1 +           // passes per satellite, time margin, computation step
    QStringList{decimalField, decimalField, dateField,    dateField,    decimalField,
                decimalField, decimalField, integerField, decimalField, integerField}
        .join(u',') +
    ")$"_L1;
const QString AT_RE_CMD_POS = "^(?<POS>"_L1 + decimalField + u',' + decimalField + ")$"_L1;
const QString AT_RE_CMD_AOP = // satellite, date, and six elements of the orbit
    "^(?<AOP>"_L1 + hexField + u',' + dateField + u',' + repeatGroups(6, AT_RE_DECIMAL) + "(,blacklisted)?|end)$"_L1;
const QString AT_RE_CMD_SAT = // satellite, downlink, uplink
    "^(?<SAT>"_L1 + hexField + u',' + integerField + u',' + integerField + "(,blacklisted)?|end)$"_L1;
const QString AT_RE_CMD_UDATE = "^(?<UDATE>"_L1 + AT_RE_DATE + ")$"_L1;
// The piece of the duration admits a point although a whole number of seconds is read from it, and the piece of the
// elevation admits none although a decimal is read: they are what the devices send, and not to be exchanged.
const QString AT_RE_CMD_NEXTPASS = "^(?<NEXTPASS>"_L1 + hexField + u',' + dateField + u',' + dateField + u',' +
                                   decimalField + u',' + integerField + ")$"_L1;

const QString AT_RE_CMD_TXFIFO = // transmitted, data, attributes
    "^(?<TXFIFO>(0|1),"_L1 + hexField + ",0x"_L1 + hexField + "|end)$"_L1;
const QString AT_RE_CMD_ATXRP = "^(?<ATXRP>"_L1 + integerField + u',' + integerField + ")$"_L1;
const QString AT_RE_CMD_ASSERT = u"^(?<ASSERT>.*)$"_s;
const QString AT_RE_CMD_RCONF = // frequencies from and to, power, modulation; the first piece is possessive ("++")
    "^(?<RCONF>("_L1 + AT_RE_INTEGER + "+),"_L1 + integerField + u',' + integerField + ",(.*))$"_L1;

QString repeatGroups(int count, const QString &piece)
{
    return QStringList(count, u'(' + piece + u')').join(u',');
}
