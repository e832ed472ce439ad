/* The files of this folder as text in the program, each with a zero behind it. */
.section .rodata
.macro part name, file
.globl \name
\name:
.incbin "\file"
.byte 0
.endm
part ospf_harbor_page_frame, HARBOR_FRAME
part ospf_harbor_page_style, HARBOR_STYLE
part ospf_harbor_page_script, HARBOR_SCRIPT
.section .note.GNU-stack, "", %progbits
