/* The model as the emitter writes it (docs/model.json), in the program: `ospf-harbor model` needs no
 * file beside it. */
.section .rodata
.globl ospf_harbor_model_json
.globl ospf_harbor_model_json_end
ospf_harbor_model_json:
.incbin HARBOR_MODEL_JSON
ospf_harbor_model_json_end:
.section .note.GNU-stack, "", %progbits
