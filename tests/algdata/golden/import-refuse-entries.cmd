head=deviceMac,commonPatNum,entry,isChanged,bandOrder,channelWidthOrder,mcsOrder,paraB,paraC
one=a4c3f0000010,2
rows() { printf '%s\n' $head "$@" | algdata import -k pat-v2 -; }
echo '-- in order'
rows $one,0,0,0,1,0,64,46094 $one,1,0,0,1,1,64,46094
echo '-- a number is left out'
rows $one,0,0,0,1,0,64,46094 $one,2,0,0,1,1,64,46094
echo '-- no number'
rows $one,,0,0,1,0,64,46094
echo '-- of another record'
rows $one,0,0,0,1,0,64,46094 a4c3f0000011,2,1,0,0,1,1,64,46094
echo '-- no column for the number'
printf '%s\n' "${head/entry,/}" $one,0,0,1,0,64,46094 | algdata import -k pat-v2 -
echo '-- a count that is wrong'
rows a4c3f0000010,3,0,0,0,1,0,64,46094
