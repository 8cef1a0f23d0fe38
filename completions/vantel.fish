# fish completion for vantel

set -l commands render thumbnail info validate new fdl
set -l formats png tiff tif bmp gif jpeg jpg jpeg2000 jp2 pdf svg fdl

complete -c vantel -f
complete -c vantel -n "not __fish_seen_subcommand_from $commands" -a render -d 'Render overlay documents to images or PDF'
complete -c vantel -n "not __fish_seen_subcommand_from $commands" -a thumbnail -d 'Write a PNG thumbnail of a document'
complete -c vantel -n "not __fish_seen_subcommand_from $commands" -a info -d 'Describe an overlay document'
complete -c vantel -n "not __fish_seen_subcommand_from $commands" -a validate -d 'Check that overlay documents can be read and drawn'
complete -c vantel -n "not __fish_seen_subcommand_from $commands" -a new -d 'Write a new overlay document from a preset or from guides'
complete -c vantel -n "not __fish_seen_subcommand_from $commands" -a fdl -d 'Work on ASC framing decision lists: apply a canvas template'
complete -c vantel -n "not __fish_seen_subcommand_from $commands" -l version -d 'Print the version'
complete -c vantel -s h -l help -d 'Print help'

# Inputs: overlay documents.
complete -c vantel -n "__fish_seen_subcommand_from render thumbnail info validate" -k -a "(__fish_complete_suffix .aspectratio)"
complete -c vantel -n "__fish_seen_subcommand_from render thumbnail info validate" -k -a "(__fish_complete_suffix .fdl)"

complete -c vantel -n "__fish_seen_subcommand_from render" -s o -l output -r -F -d 'The output file, for one document'
complete -c vantel -n "__fish_seen_subcommand_from render" -l out-dir -r -a "(__fish_complete_directories)" -d 'The folder to write outputs into'
complete -c vantel -n "__fish_seen_subcommand_from render" -s f -l format -x -a "$formats" -d 'The output format'
complete -c vantel -n "__fish_seen_subcommand_from render" -s w -l width -x -d 'The output width'
complete -c vantel -n "__fish_seen_subcommand_from render" -l height -x -d 'The output height'
complete -c vantel -n "__fish_seen_subcommand_from render" -s z -l zoom -x -d 'Scale the canvas by this factor'
complete -c vantel -n "__fish_seen_subcommand_from render thumbnail" -l background -x -d 'Replace the canvas background'
complete -c vantel -n "__fish_seen_subcommand_from render thumbnail" -l flatten -d 'Lay the picture onto an opaque colour (white)'
complete -c vantel -n "__fish_seen_subcommand_from render" -l stretch -d 'Fill --width x --height exactly'
complete -c vantel -n "__fish_seen_subcommand_from render" -s j -l jobs -x -d 'Documents rendered at once'
complete -c vantel -n "__fish_seen_subcommand_from render" -l canvas -x -d 'The canvas of a framing decision list to draw'
complete -c vantel -n "__fish_seen_subcommand_from render" -l decision -x -d 'The one framing decision to draw'
complete -c vantel -n "__fish_seen_subcommand_from render" -l desqueeze -d 'Widen a framing decision list by its squeeze'

complete -c vantel -n "__fish_seen_subcommand_from info" -l json -d 'Print the document as JSON'
complete -c vantel -n "__fish_seen_subcommand_from info" -l colors -x -a "hex hex-alpha rgba" -d 'Write every colour in this form'

complete -c vantel -n "__fish_seen_subcommand_from thumbnail" -s s -l size -x -d 'Longer side of the thumbnail in pixels'

complete -c vantel -n "__fish_seen_subcommand_from new" -s o -l output -r -F -d 'The document to write'
complete -c vantel -n "__fish_seen_subcommand_from new" -s p -l preset -x -a "default test cinema social safe" -d 'The guides'
complete -c vantel -n "__fish_seen_subcommand_from new" -s g -l guide -x -d 'A guide, such as 16:9 grid=3x3'
complete -c vantel -n "__fish_seen_subcommand_from new" -l canvas -x -d 'The canvas size in pixels, WxH'
complete -c vantel -n "__fish_seen_subcommand_from new" -l margin -x -d 'The space kept free around the guides'
complete -c vantel -n "__fish_seen_subcommand_from new" -l background -x -d 'The canvas colour'
complete -c vantel -n "__fish_seen_subcommand_from new" -l binary -d 'Write a binary property list instead of XML'
complete -c vantel -n "__fish_seen_subcommand_from new" -l force -d 'Replace the file if it exists'

complete -c vantel -n "__fish_seen_subcommand_from fdl; and not __fish_seen_subcommand_from apply" -a apply -d 'Make a new canvas of a framing decision by a canvas template'
complete -c vantel -n "__fish_seen_subcommand_from apply" -k -a "(__fish_complete_suffix .fdl)"
complete -c vantel -n "__fish_seen_subcommand_from apply" -s o -l output -r -F -d 'The list to write'
complete -c vantel -n "__fish_seen_subcommand_from apply" -l canvas -x -d 'The canvas to apply the template to'
complete -c vantel -n "__fish_seen_subcommand_from apply" -l decision -x -d 'The framing decision on that canvas'
complete -c vantel -n "__fish_seen_subcommand_from apply" -l template -x -d 'The canvas template to apply'
