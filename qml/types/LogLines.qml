// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material

import com.sarvane.qml
import Style
import "." as T

// The rows of a log, only those in sight being built: the cost of a new line does not depend on how many there are.
// The view stays at the newest line, unless the user has scrolled up to read, until they return to the end. Text is
// selected with the mouse across rows.
FocusScope {
    id: root

    required property LogModel store

    property bool held: true
    /// What marks its hits here, and moves the view to the present one; null while nothing is looked for.
    property LogFinder mFinder: null
    // As a control says it.
    readonly property int focusPolicy: Qt.StrongFocus
    readonly property alias mList: list

    // The selection, from where it was begun to where the mouse is; row -1 is none.
    property int anchorRow: -1
    property int anchorColumn: 0
    property int cursorRow: -1
    property int cursorColumn: 0

    // Whether the user reads among the rows that are being dropped.
    property bool readingOldest: false

    readonly property bool selectionForward: anchorRow < cursorRow || (anchorRow === cursorRow && anchorColumn <= cursorColumn)
    readonly property int firstRow: selectionForward ? anchorRow : cursorRow
    readonly property int firstColumn: selectionForward ? anchorColumn : cursorColumn
    readonly property int lastRow: selectionForward ? cursorRow : anchorRow
    readonly property int lastColumn: selectionForward ? cursorColumn : anchorColumn

    function clear(): void {
        select(-1, 0, -1, 0);
        store.clear();
        held = true;
    }

    function select(fromRow: int, fromColumn: int, toRow: int, toColumn: int): void {
        anchorRow = fromRow;
        anchorColumn = fromColumn;
        cursorRow = toRow;
        cursorColumn = toColumn;
    }

    function selectAll(): void {
        store.publish();
        select(list.count > 0 ? 0 : -1, 0, list.count - 1, LogModel.LineEnd);
    }

    function copy(): void {
        store.copyBetween(firstRow, firstColumn, lastRow, lastColumn);
    }

    // The first count rows have given way to one. A selection that began there begins at that one.
    function shift(count: int): void {
        if (lastRow < count) {
            select(-1, 0, -1, 0);
            return;
        }
        const anchorStays = anchorRow >= count;
        const cursorStays = cursorRow >= count;
        select(anchorStays ? anchorRow - count + 1 : 0, anchorStays ? anchorColumn : 0, cursorStays ? cursorRow - count + 1 : 0, cursorStays ? cursorColumn : 0);
    }

    // To the newest line, if that is where the user wants to be. Rows are built only for a pane that can be seen.
    function follow(): void {
        if (!held || !visible || mouse.pressed) {
            return;
        }
        // The view moves no further than to the end that it estimates from the rows that exist. Each move builds rows at
        // the end, and a line that wraps makes them higher than the estimate, so it moves until it stays.
        for (let moves = 0, before = NaN; moves < 5 && before !== list.contentY; ++moves) {
            before = list.contentY;
            list.positionViewAtEnd();
        }
    }

    function jumpToLatest(): void {
        held = true;
        follow();
    }

    // The row that the user reads first.
    function firstShownRow(): int {
        return list.indexAt(1, list.contentY + 1);
    }

    function showHit(): void {
        if (mFinder !== null && mFinder.currentRow >= 0) {
            held = false;
            list.positionViewAtIndex(mFinder.currentRow, ListView.Contain);
            list.positionViewAtIndex(mFinder.currentRow, ListView.Contain); // by the heights of the rows built meanwhile
        }
    }

    function scrollBy(distance: real): void {
        const end = Math.max(list.originY, list.originY + list.contentHeight - list.height);
        list.contentY = Math.max(list.originY, Math.min(end, list.contentY + distance));
        held = list.atYEnd;
    }

    // The row and the column of a point in the view; beside or beyond the rows, the nearest.
    function locate(x: real, y: real): point {
        const inView = Math.max(0, Math.min(list.height - 1, y));
        const row = list.indexAt(1, list.contentY + inView);
        const line = list.itemAtIndex(row) as TextEdit;
        if (line === null) {
            return Qt.point(LogModel.LineEnd, list.count - 1);
        }
        return Qt.point(line.positionAt(x, list.contentY + inView - line.y), row);
    }

    Accessible.role: Accessible.List
    activeFocusOnTab: true

    Keys.onPressed: event => {
        if (event.matches(StandardKey.Copy)) {
            root.copy();
        } else if (event.matches(StandardKey.SelectAll)) {
            root.selectAll();
        } else if (event.key === Qt.Key_Up || event.key === Qt.Key_Down) {
            root.scrollBy(event.key === Qt.Key_Up ? -metrics.height : metrics.height);
        } else if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown) {
            root.scrollBy(event.key === Qt.Key_PageUp ? -list.height : list.height);
        } else if (event.key === Qt.Key_Home) {
            list.positionViewAtBeginning();
            root.held = list.atYEnd;
        } else if (event.key === Qt.Key_End) {
            root.jumpToLatest();
        } else {
            return;
        }
        event.accepted = true;
    }

    onHeightChanged: settling.restart()
    onMFinderChanged: {
        if (mFinder === null && list.atYEnd) {
            held = true;
        }
    }
    onVisibleChanged: follow()
    onWidthChanged: settling.restart()

    // A new size wraps the lines anew, and the end is where it was only after that.
    Timer {
        id: settling

        interval: 0

        onTriggered: root.follow()
    }

    FontLoader {
        id: monospace

        source: Style.font.robotoMono
    }

    FontMetrics {
        id: metrics

        font.family: monospace.name
        font.pointSize: 10
    }

    ListView {
        id: list

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        // No row is current: the view would move its highlight to it, at a walk and unseen, wherever it believes the
        // first row of a long log to lie, and the window would be drawn for minutes without a change.
        currentIndex: -1
        // The mouse selects; the wheel, the keys and the bar scroll.
        interactive: false
        model: root.store
        reuseItems: true

        ScrollBar.vertical: ScrollBar {
            id: bar

            minimumSize: 0.08
            policy: ScrollBar.AlwaysOn

            onPositionChanged: {
                if (bar.pressed) {
                    root.held = list.atYEnd;
                }
            }
        }

        delegate: TextEdit {
            id: line

            required property int index
            required property string shown

            readonly property bool selected: root.firstRow >= 0 && line.index >= root.firstRow && line.index <= root.lastRow
            readonly property int selectedFrom: line.selected && line.index === root.firstRow ? Math.min(line.shown.length, root.firstColumn) : 0
            readonly property int selectedTo: !line.selected ? 0 : line.index === root.lastRow ? Math.min(line.shown.length, root.lastColumn) : line.shown.length

            // Each select() counts as a change of the text, so it is spared where there is nothing to do.
            function mark(): void {
                if (line.selectedFrom !== line.selectedTo || line.selectionStart !== line.selectionEnd) {
                    line.select(line.selectedFrom, line.selectedTo);
                }
            }

            // By hand and not by a binding, since the selection is to be made in the text that belongs to it.
            function show(): void {
                marks.mText = "";
                line.text = line.shown;
                line.mark();
                marks.mText = line.shown;
            }

            activeFocusOnPress: false
            color: Material.foreground
            font: metrics.font
            persistentSelection: true
            readOnly: true
            selectionColor: Material.accent
            textFormat: TextEdit.PlainText
            width: list.width - bar.width
            wrapMode: TextEdit.Wrap

            Accessible.name: line.shown
            Accessible.role: Accessible.StaticText

            T.FindMarks {
                id: marks

                mFinder: root.mFinder
                mIsCurrent: root.mFinder?.currentRow === line.index
                mLine: line
            }

            Component.onCompleted: line.show()
            onSelectedFromChanged: line.mark()
            onSelectedToChanged: line.mark()
            onShownChanged: line.show()
        }
    }

    MouseArea {
        id: mouse

        function extend(): void {
            const place = root.locate(mouse.mouseX, mouse.mouseY);
            root.cursorRow = place.y;
            root.cursorColumn = place.x;
        }

        anchors.fill: parent
        anchors.rightMargin: bar.width
        cursorShape: Qt.IBeamCursor

        onDoubleClicked: {
            const line = list.itemAtIndex(root.anchorRow) as TextEdit;
            if (line !== null) {
                line.cursorPosition = root.anchorColumn;
                line.selectWord();
                root.select(root.anchorRow, line.selectionStart, root.anchorRow, line.selectionEnd);
            }
        }
        onPositionChanged: mouse.extend()
        onPressed: event => {
            root.forceActiveFocus(Qt.MouseFocusReason);
            if (!(event.modifiers & Qt.ShiftModifier) || root.anchorRow < 0) {
                const place = root.locate(event.x, event.y);
                root.select(place.y, place.x, place.y, place.x);
            } else {
                mouse.extend();
            }
        }
        onReleased: root.follow()
        onWheel: event => root.scrollBy(event.pixelDelta.y !== 0 ? -event.pixelDelta.y : -event.angleDelta.y / 120 * 3 * metrics.height)

        // A drag beyond the edge goes on through the rows that are out of sight.
        Timer {
            interval: 50
            repeat: true
            running: mouse.pressed && (mouse.mouseY < 0 || mouse.mouseY > mouse.height)

            onTriggered: {
                root.scrollBy(mouse.mouseY < 0 ? mouse.mouseY : mouse.mouseY - mouse.height);
                mouse.extend();
            }
        }
    }

    Connections {
        function onCurrentChanged() {
            root.showHit();
        }

        target: root.mFinder
    }

    Connections {
        function onDropped(count: int) {
            root.shift(count);
            if (root.readingOldest) {
                list.positionViewAtBeginning();
            }
        }

        function onPublished() {
            root.follow();
        }

        function onRowsAboutToBeRemoved(parent: var, first: int, last: int) {
            root.readingOldest = !root.held && list.indexAt(1, list.contentY) <= last;
        }

        target: root.store
    }
}
