# Completion of vantor for bash: commands, their options, and the files that they take.
_vantor() {
    local cur prev words cword
    _init_completion || return

    local word group='' command=''
    for word in "${words[@]:1:cword-1}"; do
        [[ $word == -* ]] && continue
        if [[ -z $group ]]; then
            group=$word
        else
            command=$word
            break
        fi
    done

    local values='' output='' commands='' options='' files=''
    case "$group $command" in
        ' ') commands='settings run counter log track study corridor' options='--theme --version' files='ld2' ;;
        'settings ') commands='show' ;;
        'run ') commands='show convert delay stats export despike smooth' ;;
        'counter ') commands='studies convert check' ;;
        'log ') commands='show convert' ;;
        'track ') commands='show convert' ;;
        'corridor ') commands='new show match studies results compare report verify' ;;
        'study ') commands='new show compute bounds export chart report propose statistics compare' ;;
        'settings show') ;;
        'run show') options='--samples' files='@(rd2|rdf)' ;;
        'run convert') files='rdf' ;;
        'run delay')
            options='--start-dist --end-dist --start-sample --end-sample --ideal-speed --stop-speed' files='@(rd2|rdf)'
            ;;
        'run stats') files='@(rd2|rdf)' ;;
        'run export') options='--output --time-zone' files='@(rd2|rdf)' output='@(gpx|geojson|json|csv)' ;;
        'run despike') options='--output' files='rd2' output='rd2' ;;
        'run smooth') options='--factor --output' files='rd2' output='rd2' ;;
        'counter studies') files='tdc' ;;
        'counter convert') options='--to' files='tdc' ;;
        'counter check') files='tdc' ;;
        'log show') options='--rows --signed' files='@(gdf|gd2|odf|od2|ddf|txt|mdb|pdb)' ;;
        'log convert') options='--to --gaps --signed' files='@(gdf|gd2|odf|od2|ddf|txt|mdb|pdb)' ;;
        'track show') options='--time-zone --cut' files='@(gpx|nmea|nma|csv|tsv|txt|fit|tcx|kml|igc|gdb|sbp|gdf|gd2|odf|od2|ddf|mdb|pdb)' ;;
        'track convert') options='--to --time-zone --cut' files='@(gpx|nmea|nma|csv|tsv|txt|fit|tcx|kml|igc|gdb|sbp|gdf|gd2|odf|od2|ddf|mdb|pdb)' ;;
        'study new') files='-d' ;;
        'study show') files='ld2' ;;
        'study compute') options='--stop-speed' files='ld2' ;;
        'study bounds') options='--start-dist --end-dist --ideal-speed --all' files='ld2' ;;
        'study export')
            options='--output --samples --time-zone' files='ld2' output='@(xls|xlsx|csv|gpx|geojson|json)'
            ;;
        'study chart') options='--output --counted' files='ld2' output='@(png|svg|pdf)' ;;
        'study report') options='--output --paper --landscape --no-headings --only' files='ld2' output='pdf' ;;
        'study propose') options='--node --common --apply' files='ld2' ;;
        'study statistics')
            options='--confidence --error --error-speed --stop --go --free-flow' files='ld2'
            ;;
        'study compare')
            options='--output --confidence --error --error-speed --stop --go --free-flow' files='ld2' output='pdf'
            ;;
        'corridor new')
            options='--nodes --from-run --directions --ideal-speed --upstream --downstream --period' files='@(csv|geojson|rd2)'
            ;;
        'corridor show') files='corridor.geojson' ;;
        'corridor match')
            options='--group --direction --after --time-zone' files='@(corridor.geojson|rd2|gpx|nmea|csv|fit|tcx|kml)'
            ;;
        'corridor studies') files='corridor.geojson' ;;
        'corridor results') options='--period --condition' files='corridor.geojson' ;;
        'corridor compare') options='--period' files='corridor.geojson' ;;
        'corridor report')
            options='--output --period --condition --paper --landscape --no-headings --only' files='corridor.geojson'
            output='@(pdf|xlsx|xls|geojson)'
            ;;
        'corridor verify') options='--corridor' files='@(figures.json|pdf|xlsx|xls)' ;;
        *) options='--theme' files='ld2' ;;
    esac

    case $prev in
        --to) files='-d' ;;&
        --output) files=$output ;;&
        --to | --output)
            _filedir "$files"
            return
            ;;
        --theme) values='light dark' ;;
        --gaps) values='speed' ;;
        --paper) values='letter a4' ;;
        --only) values='cover summary overall before-after chart time-space map profiles method statistics' ;;
        --confidence | --error | --error-speed | --stop | --go | --free-flow) return ;;
        --time-zone) values=$(cd /usr/share/zoneinfo 2>/dev/null && printf '%s\n' UTC [A-Z]*/[A-Z]*) ;;
        --cut) return ;;
        --factor | --start-dist | --end-dist | --start-sample | --end-sample | --ideal-speed | --stop-speed) return ;;
    esac

    if [[ -n $values ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$values" -- "$cur")
    elif [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options --json --help" -- "$cur")
    else
        mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$cur")
        [[ -z $files ]] || _filedir "$files"
    fi
} &&
    complete -F _vantor vantor
