# Completion for zelviewer in bash: options, the values of those that take fixed ones, and files of the right kinds.
_zelviewer() {
    local cur prev words cword split
    _init_completion -s || return

    local images='@(tif|tiff|ics)' pictures='@(png|tif|tiff|ics)' i
    for ((i = 1; i < cword; i++)); do
        if [[ ${words[i]} == -- ]]; then
            _filedir "$images"
            return
        fi
    done

    case $prev in
    --type) COMPREPLY=($(compgen -W 'gray8 gray16 int float rgb rgb16 complex' -- "$cur")) ;;
    --stretch) COMPREPLY=($(compgen -W 'none linear percentil equalize' -- "$cur")) ;;
    --part) COMPREPLY=($(compgen -W 'real imaginary phase amplitude' -- "$cur")) ;;
    --windows)
        local chosen= window
        [[ $cur == *,* ]] && chosen=${cur%,*},
        for window in xy xz yz; do
            [[ ,$chosen == *,$window,* ]] || COMPREPLY+=($(compgen -W "$chosen$window" -- "$cur"))
        done
        compopt -o nospace # a comma may follow
        ;;
    --labels) _filedir "$images" ;;
    --save-view | --save-gallery) _filedir "$pictures" ;;
    --save-film) _filedir gif ;;
    --screenshot) _filedir png ;;
    --view) _filedir zelview ;;
    --export-meshes) _filedir -d ;;
    --channel | --channels | --resolution | --border | --slices | --rows | --columns | --spacing | --fps | --frames) ;;
    *)
        $split && return
        if [[ $cur == -* ]]; then
            COMPREPLY=($(compgen -W '-h --help --version --sequence --type --channel --channels --binary --resolution
                --labels --components --export-meshes --close-meshes --voxels --stretch --part --volume --view
                --screenshot --save-view --windows --border --save-gallery --slices --rows --columns --spacing
                --save-film --fps --frames --force --info --json --verbose' -- "$cur"))
        else
            _filedir "$images"
        fi
        ;;
    esac
} && complete -F _zelviewer zelviewer
