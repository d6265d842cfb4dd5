#!/bin/sh
# figure.sh STACK FIGURE: makes a figure unless it is there already.
[ -e "$2" ] || zelviewer --save-view "$2" "$1"
